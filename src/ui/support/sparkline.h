// A small line of counts whose last point is today.
#pragma once

#include "theme/theme.h"

#include <QWidget>

#include <functional>
#include <vector>

class QPainter;

namespace ellwynd {

class Appearance;

/// One day's count; `day` counts from the left end of the line.
struct SparklinePoint {
    std::int64_t day = 0;
    std::int64_t count = 0;
};

/// A line of counts.
struct SparklineData {
    /// By day; the last is drawn as a dot.
    std::vector<SparklinePoint> points;
    /// The length of the line, from 0 on.
    std::int64_t days = 1;
    /// The count at the upper edge; lines that are compared share it.
    std::int64_t highest = 1;
};

/// Draws the line into `area`.
void drawSparkline(
    QPainter &painter, const QRectF &area, const SparklineData &line, const QColor &color,
    const Appearance &appearance);

class Sparkline : public QWidget {
    Q_OBJECT

  public:
    using Color = std::function<QColor(const Theme &)>;

    Sparkline(const Appearance &appearance, Color color, QWidget *parent = nullptr);

    void setLine(SparklineData line);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    const Appearance &appearance;
    Color color;
    SparklineData line;
};

} // namespace ellwynd
