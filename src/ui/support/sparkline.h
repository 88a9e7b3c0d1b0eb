// A sparkline of daily counts that ends today.
#pragma once

#include "theme/theme.h"

#include <QWidget>

#include <functional>
#include <vector>

class QPainter;

namespace ellwynd {

class Appearance;

/// One day's count; day 0 is the left end of the line.
struct SparklinePoint {
    std::int64_t day = 0;
    std::int64_t count = 0;
};

struct SparklineData {
    /// In ascending order of days; the last is drawn as a dot.
    std::vector<SparklinePoint> points;
    /// The day at the right end.
    std::int64_t days = 1;
    /// The count at the upper edge; the same for lines that are compared.
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
