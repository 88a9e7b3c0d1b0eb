// A student's term as a chart of dots: the level of each day on which the course was opened.
#pragma once

#include "memory/termtrend.h"

#include <QWidget>

namespace ellwynd {

class Appearance;

/// One dot per recorded day, positioned by time, with the most severe level on the top row. A
/// dashed line joins neighbouring dots, except across a long gap.
class TermChart : public QWidget {
    Q_OBJECT

  public:
    TermChart(TermTrend trend, const Appearance &appearance, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    [[nodiscard]] QPointF place(const TermTrend::Point &point, const QRectF &area) const;

    TermTrend trend;
    const Appearance &appearance;
};

} // namespace ellwynd
