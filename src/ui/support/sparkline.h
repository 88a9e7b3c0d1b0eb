// A small line of counts whose last point is today.
#pragma once

#include "theme/theme.h"

#include <QWidget>

#include <functional>

namespace ellwynd {

class Appearance;

class Sparkline : public QWidget {
    Q_OBJECT

  public:
    using Color = std::function<QColor(const Theme &)>;

    /// One day's count; `day` counts from the left end of the line.
    struct Point {
        std::int64_t day = 0;
        std::int64_t count = 0;
    };

    Sparkline(const Appearance &appearance, Color color, QWidget *parent = nullptr);

    /// @param points by day; the last is drawn as a dot.
    /// @param days the length of the line, from 0 on.
    /// @param highest the count at the upper edge; lines that are compared share it.
    void setPoints(std::vector<Point> points, std::int64_t days, std::int64_t highest);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    const Appearance &appearance;
    Color color;
    std::vector<Point> points;
    std::int64_t days = 1;
    std::int64_t highest = 1;
};

} // namespace ellwynd
