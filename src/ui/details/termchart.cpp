#include "ui/details/termchart.h"

#include "base/calendar.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr int rows = 4;
/// From the top row down.
constexpr std::array<std::optional<RiskLevel>, rows> levels{
    RiskLevel::atRisk, RiskLevel::concern, RiskLevel::watch, std::nullopt};

QColor dotColor(const Theme &theme, std::optional<RiskLevel> level) {
    return level ? levelColors(theme, *level).text : theme.ok.text;
}

} // namespace

TermChart::TermChart(
    TermTrend trend, const ChartMarks &marks, const Appearance &appearance, QWidget *parent)
    : QWidget(parent), trend(std::move(trend)), marks(marks), appearance(appearance) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Levels this term"));
    QString description = qstring(termStory(this->trend));
    if (showsContact())
        description += QStringLiteral(" Wrote on ") + qstring(calendar::shortDay(*marks.wroteAt));
    setAccessibleDescription(description);
}

bool TermChart::showsContact() const {
    return marks.wroteAt && *marks.wroteAt >= trend.points.front().date;
}

QSize TermChart::sizeHint() const {
    return {appearance.px(220), appearance.px(showsContact() ? 112 : 96)};
}

QSize TermChart::minimumSizeHint() const {
    return {appearance.px(130), sizeHint().height()};
}

double TermChart::horizontal(Date date, const QRectF &area) const {
    using seconds = std::chrono::duration<double>;
    const seconds since = date - trend.points.front().date;
    // Avoids dividing by zero when all points are of one moment.
    const double span =
        std::max(1.0, seconds(trend.points.back().date - trend.points.front().date).count());
    return area.left() + area.width() * std::min(1.0, since.count() / span);
}

QPointF TermChart::place(const TermTrend::Point &point, const QRectF &area) const {
    const int row = rows - 1 - severity(point.level);
    return {horizontal(point.date, area), area.top() + area.height() * row / (rows - 1)};
}

/// A line where the teacher wrote, with the day below it.
void TermChart::drawContact(QPainter &painter, const QRectF &area) const {
    const QString text = QStringLiteral("wrote ") + qstring(calendar::shortDay(*marks.wroteAt));
    const QFontMetrics metrics(painter.font());
    const double x = horizontal(*marks.wroteAt, area);
    const double bottom = height() - metrics.height();
    painter.setPen(QPen(appearance.theme().link, 1));
    painter.drawLine(QPointF(x, area.top() - metrics.height() / 2.0), QPointF(x, bottom));
    const double width = metrics.horizontalAdvance(text);
    const double left = std::clamp(x - width / 2, 0.0, std::max(0.0, this->width() - width - 1));
    painter.drawText(QPointF(left, bottom + metrics.ascent()), text);
}

void TermChart::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme &theme = appearance.theme();
    const QFont font = appearance.font(0.82);
    const QFontMetrics metrics(font);
    const int labels = metrics.horizontalAdvance(QStringLiteral("Concern")) + appearance.px(12);
    const double radius = appearance.px(9) / 2.0;
    const QRectF area = QRectF(rect()).adjusted(
        labels + radius, metrics.height() / 2.0 + 2, -radius - 1,
        -metrics.height() / 2.0 - 2 - (showsContact() ? metrics.height() : 0));

    painter.setFont(font);
    for (int row = 0; row < rows; ++row) {
        const double y = area.top() + area.height() * row / (rows - 1);
        painter.setPen(theme.secondaryText);
        painter.drawText(
            QRectF(0, y - metrics.height() / 2.0, labels, metrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter, qstring(levelName(levels[std::size_t(row)])));
        painter.setPen(QPen(theme.separator, 1));
        painter.drawLine(QPointF(area.left() - radius, y), QPointF(area.right() + radius, y));
    }
    if (showsContact())
        drawContact(painter, area);
    painter.setPen(QPen(theme.secondaryText, 1, Qt::DashLine));
    for (std::size_t i = 1; i < trend.points.size(); ++i) {
        if (isJoined(trend.points[i - 1], trend.points[i]))
            painter.drawLine(place(trend.points[i - 1], area), place(trend.points[i], area));
    }
    for (const TermTrend::Point &point : trend.points) {
        painter.setPen(QPen(theme.window, 1.5));
        painter.setBrush(dotColor(theme, point.level));
        painter.drawEllipse(place(point, area), radius, radius);
    }
    if (marks.levelDiffers) {
        const TermTrend::Point live{.date = trend.points.back().date, .level = marks.level};
        painter.setPen(QPen(dotColor(theme, marks.level), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(place(live, area), radius, radius);
    }
}

} // namespace ellwynd
