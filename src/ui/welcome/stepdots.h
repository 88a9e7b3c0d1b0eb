// How far a sequence of steps is.
#pragma once

#include <QWidget>

namespace ellwynd {

class Appearance;

/// One mark for each step: a check mark for those behind, a long bar for the one that is shown, a
/// ring for those to come. Screen readers hear "Step 2 of 3".
class StepDots : public QWidget {
    Q_OBJECT

  public:
    StepDots(int steps, const Appearance &appearance, QWidget *parent);

    /// @param step from 1.
    void setStep(int step);
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    int steps;
    int current = 1;
    const Appearance &appearance;
};

} // namespace ellwynd
