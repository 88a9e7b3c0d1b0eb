// The progress through a sequence of steps.
#pragma once

#include <QWidget>

namespace ellwynd {

class Appearance;

/// One mark per step: a check mark for finished steps, a long bar for the current one, a ring for
/// later ones. Screen readers read "Step 2 of 3".
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
