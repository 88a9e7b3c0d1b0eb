// A student's term as a chart of dots: the level of each day on which the course was opened.
#pragma once

#include "memory/termtrend.h"

#include <QWidget>

namespace ellwynd {

class Appearance;

/// What a chart shows beside the recorded levels.
struct ChartMarks {
    /// When the teacher wrote to the student, shown by a line; absent for never.
    std::optional<Date> wroteAt;
    /// Whether the current level differs from the last dot; it is then a hollow dot.
    bool levelDiffers = false;
    std::optional<RiskLevel> level;
};

/// One dot per recorded day, positioned by time, with the most severe level on the top row. A
/// dashed line joins neighbouring dots, except across a long gap.
class TermChart : public QWidget {
    Q_OBJECT

  public:
    TermChart(
        TermTrend trend, const ChartMarks &marks, const Appearance &appearance,
        QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    [[nodiscard]] double horizontal(Date date, const QRectF &area) const;
    [[nodiscard]] QPointF place(const TermTrend::Point &point, const QRectF &area) const;
    /// Whether the teacher wrote within the time of the chart.
    [[nodiscard]] bool showsContact() const;
    void drawContact(QPainter &painter, const QRectF &area) const;

    TermTrend trend;
    ChartMarks marks;
    const Appearance &appearance;
};

} // namespace ellwynd
