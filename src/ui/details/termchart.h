// A student's term as dots: when the course was opened, and the level of that day.
#pragma once

#include "memory/termtrend.h"

#include <QWidget>

namespace ellwynd {

class Appearance;

/// One dot per recorded day, placed by time from the first to the last, the most severe level on
/// the top row. Neighbouring dots are joined by a dashed line, except across a long gap.
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
