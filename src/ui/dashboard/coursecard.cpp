#include "ui/dashboard/coursecard.h"

#include "app/dashboard/dashboardtexts.h"
#include "base/text.h"
#include "memory/outreach.h"
#include "preferences/coursesettings.h"
#include "theme/courseicon.h"
#include "ui/support/appearance.h"
#include "ui/support/drawcourselabel.h"
#include "ui/support/levelpill.h"
#include "ui/support/sparkline.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/tooltip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <algorithm>

namespace ellwynd {

namespace {

// The card's measures at text scale 1.
constexpr double cardHeight = 128;
constexpr double margin = 13;
constexpr double tileSide = 27;
constexpr double barTop = 52;
constexpr double barHeight = 8;
constexpr double levelsTop = 64;
constexpr double movementTop = 83;
constexpr double mostMissedTop = 102;
constexpr double lineHeight = 17;

/// Draws a text at the left of `rect` and returns the rest of `rect`.
QRect drawRun(QPainter &painter, QRect rect, const QString &text, const QFont &font, QColor color) {
    painter.setFont(font);
    painter.setPen(color);
    rect.setLeft(rect.left() + drawElided(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, text));
    return rect;
}

} // namespace

CourseCard::CourseCard(const UserDefaults &defaults, const Appearance &appearance, QWidget *parent)
    : KeyboardButton(parent), defaults(defaults), appearance(appearance) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        updateGeometry();
        update();
    });
}

void CourseCard::setCard(const DashboardCourseCard &newCard) {
    if (newCard == card && !isPlaceholder)
        return;
    card = newCard;
    isPlaceholder = false;
    setAccessibleName(qstring(accessibleText(card)));
    setAccessibleDescription(qstring(accessibleTrend(card)));
    update();
}

void CourseCard::setPlaceholder(const Course &course) {
    if (isPlaceholder && card.courseID == course.id && card.name == displayName(course))
        return;
    card = {.courseID = course.id, .name = displayName(course), .label = courseLabel(course)};
    isPlaceholder = true;
    setAccessibleName(qstring(card.name) + QStringLiteral(". Being scored. Opens the course."));
    setAccessibleDescription({});
    update();
}

QSize CourseCard::sizeHint() const {
    return {appearance.px(300), appearance.px(cardHeight)};
}

QSize CourseCard::minimumSizeHint() const {
    return {appearance.px(140), appearance.px(cardHeight)};
}

QRect CourseCard::line(double top) const {
    const int side = appearance.px(margin);
    return {side, appearance.px(top), width() - 2 * side, appearance.px(lineHeight)};
}

QRect CourseCard::trendArea() const {
    QRect area = line(movementTop);
    area.setLeft(area.right() - std::min(appearance.px(96), area.width() / 3));
    return area;
}

QRect CourseCard::mostMissedArea() const {
    return line(mostMissedTop);
}

void CourseCard::paintEvent(QPaintEvent *) {
    const Theme &theme = appearance.theme();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool focused = hasFocus();
    painter.setPen(QPen(focused ? theme.accent : theme.separator, focused ? 2 : 1));
    painter.setBrush(isDown() ? theme.controlPressed : hovered ? theme.hover : theme.surface);
    const double radius = appearance.px(10);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    const int tile = appearance.px(tileSide);
    const QPoint corner(appearance.px(margin), appearance.px(margin));
    painter.drawPixmap(
        corner,
        courseTile(
            card.courseID, card.name, tile, devicePixelRatioF(),
            courseIcon(defaults, card.courseID)));
    const int left = corner.x() + tile + appearance.px(9);
    const int right = isPlaceholder ? line(0).right() : drawCount(painter) - appearance.px(8);
    drawCourseLabel(
        painter, QRect(left, corner.y(), right - left, tile), card.label, QFont::DemiBold,
        appearance);
    if (isPlaceholder)
        return drawPlaceholder(painter);
    drawBar(painter);
    drawLevels(painter);
    drawMovement(painter);
    drawTrend(painter);
    drawMostMissed(painter);
}

/// Bars where the figures will be.
void CourseCard::drawPlaceholder(QPainter &painter) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(appearance.theme().separator);
    const auto bar = [&](double top, double height, int share) {
        const QRect area = line(top);
        const int tall = appearance.px(height);
        painter.drawRoundedRect(
            QRect(area.left(), area.top(), area.width() / share, tall), tall / 3.0, tall / 3.0);
    };
    bar(barTop, barHeight, 1);
    bar(levelsTop + 4, 10, 2);
    bar(mostMissedTop + 4, 10, 3);
}

int CourseCard::drawCount(QPainter &painter) const {
    const Theme &theme = appearance.theme();
    const bool allOK = card.flagged() == 0;
    const QFont large = appearance.font(allOK ? 1.2 : 1.8, QFont::Bold);
    const QString count = allOK ? QStringLiteral("All OK") : QString::number(card.flagged());
    QRect area = line(margin);
    area.setHeight(appearance.px(tileSide));
    painter.setFont(large);
    painter.setPen(allOK ? theme.ok.text : theme.text);
    drawLine(painter, area, Qt::AlignRight | Qt::AlignVCenter, count);
    int left = area.right() - textWidth(large, count);
    if (!allOK) {
        const QFontMetrics metrics(large);
        const QFont small = appearance.font(0.88);
        const QFontMetrics smallMetrics(small);
        painter.setFont(small);
        painter.setPen(theme.secondaryText);
        // Both texts share a baseline.
        const QString word = QStringLiteral("flagged");
        const int width = textWidth(small, word);
        left -= width + appearance.px(7);
        const int base = area.center().y() - metrics.height() / 2 + metrics.ascent();
        drawLine(
            painter, QRect(left, base - smallMetrics.ascent(), width, smallMetrics.height()),
            Qt::AlignLeft | Qt::AlignTop, word);
    }
    return left;
}

/// The share of each level in the class.
void CourseCard::drawBar(QPainter &painter) const {
    const Theme &theme = appearance.theme();
    const QRectF area(
        QPointF(line(barTop).topLeft()), QSizeF(line(0).width(), appearance.px(barHeight)));
    QPainterPath outline;
    outline.addRoundedRect(area, area.height() / 2, area.height() / 2);
    painter.save();
    painter.setClipPath(outline);
    painter.fillRect(area, theme.controlPressed);
    double left = area.left();
    for (const RiskLevel level : allRiskLevels) {
        const double share =
            double(card.levels[level]) / double(std::max<std::int64_t>(1, card.total));
        painter.fillRect(
            QRectF(left, area.top(), area.width() * share, area.height()),
            levelColors(theme, level).bar);
        left += area.width() * share;
    }
    painter.restore();
}

void CourseCard::drawLevels(QPainter &painter) const {
    const Theme &theme = appearance.theme();
    QRect area = line(levelsTop);
    const bool allOK = card.flagged() == 0;
    painter.setFont(appearance.font(0.92));
    painter.setPen(theme.secondaryText);
    const QString total =
        allOK ? qstring(plural(card.total, "student")) : QStringLiteral("of %1").arg(card.total);
    drawLine(painter, area, Qt::AlignRight | Qt::AlignVCenter, total);
    area.setRight(area.right() - textWidth(painter.font(), total) - appearance.px(6));
    drawRun(painter, area, qstring(levelsText(card.levels)), appearance.font(0.92), theme.text);
}

void CourseCard::drawMovement(QPainter &painter) const {
    QStringList parts;
    if (const std::string marks = movementMarks(card); !marks.empty())
        parts << qstring(marks);
    if (card.awaitingFollowUp > 0)
        parts << qstring(awaitingText(card.awaitingFollowUp));
    QRect area = line(movementTop);
    area.setRight(trendArea().left() - appearance.px(6));
    drawRun(
        painter, area, parts.join(QStringLiteral(" · ")), appearance.font(0.92),
        appearance.theme().secondaryText);
}

/// A single day is no trend.
void CourseCard::drawTrend(QPainter &painter) const {
    if (card.trend.size() < 2)
        return;
    SparklineData data;
    for (std::size_t i = 0; i < card.trend.size(); ++i) {
        data.points.push_back({std::int64_t(i), card.trend[i]});
        data.highest = std::max(data.highest, card.trend[i]);
    }
    data.days = std::int64_t(card.trend.size()) - 1;
    drawSparkline(painter, trendArea(), data, appearance.theme().link, appearance);
}

void CourseCard::drawMostMissed(QPainter &painter) const {
    if (!card.mostMissed)
        return;
    const Theme &theme = appearance.theme();
    const QFont font = appearance.font(0.92);
    const bool isClassWide = card.mostMissed->isClassWide;
    const QString tail = QStringLiteral(" — ") +
        qstring(plural(card.mostMissed->count, "student")) +
        (isClassWide ? QStringLiteral(", left out") : QString());
    QRect area = mostMissedArea();
    area = drawRun(painter, area, QStringLiteral("Most missed: "), font, theme.secondaryText);
    // The title is elided before the count.
    const int tailWidth = textWidth(font, tail);
    area = drawRun(
        painter, area.adjusted(0, 0, -tailWidth, 0), qstring(collapsed(card.mostMissed->title)),
        appearance.font(0.92, QFont::Medium), theme.text);
    area.setRight(mostMissedArea().right() + 2);
    drawRun(painter, area, tail, font, isClassWide ? theme.attention : theme.secondaryText);
}

bool CourseCard::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return KeyboardButton::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    QString tip = qstring(card.name);
    if (card.trend.size() > 1 && trendArea().contains(help->pos()))
        tip = qstring(trendHelp);
    else if (card.mostMissed && mostMissedArea().contains(help->pos()))
        tip = qstring(mostMissedHelp(*card.mostMissed));
    QToolTip::showText(help->globalPos(), plainToolTip(tip), this);
    return true;
}

void CourseCard::enterEvent(QEnterEvent *event) {
    hovered = true;
    update();
    KeyboardButton::enterEvent(event);
}

void CourseCard::leaveEvent(QEvent *event) {
    hovered = false;
    update();
    KeyboardButton::leaveEvent(event);
}

} // namespace ellwynd
