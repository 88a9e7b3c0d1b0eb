// The legend of the dashboard's levels and marks.
#pragma once

#include <QWidget>

namespace ellwynd {

class Appearance;

/// Entries side by side, wrapped to as many lines as needed.
class Legend : public QWidget {
    Q_OBJECT

  public:
    explicit Legend(const Appearance &appearance, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    /// Lays the entries out, draws them unless `painter` is null, and returns the height.
    int layOut(int width, QPainter *painter) const;

    const Appearance &appearance;
};

} // namespace ellwynd
