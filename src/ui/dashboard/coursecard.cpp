#include "ui/dashboard/coursecard.h"

#include "app/dashboard/dashboardtexts.h"
#include "base/text.h"
#include "memory/dailylevels.h"
#include "memory/outreach.h"
#include "preferences/coursesettings.h"
#include "theme/courseicon.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "ui/support/sparkline.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"
#include "uikit/tooltip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace ellwynd {

namespace {

// Top edges and heights of the card's lines, at text scale 1.
constexpr double countTop = 44;
constexpr double countHeight = 42;
constexpr double levelsTop = 92;
constexpr double marksTop = 120;
constexpr double cardHeight = 190;

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
    update();
}

void CourseCard::setPlaceholder(std::int64_t courseID, const std::string &name) {
    if (isPlaceholder && card.courseID == courseID && card.name == name)
        return;
    card = {.courseID = courseID, .name = name};
    isPlaceholder = true;
    setAccessibleName(qstring(name) + QStringLiteral(". Being scored. Opens the course."));
    update();
}

QSize CourseCard::sizeHint() const {
    return {appearance.px(300), appearance.px(cardHeight)};
}

QSize CourseCard::minimumSizeHint() const {
    return {appearance.px(200), appearance.px(cardHeight)};
}

QRect CourseCard::content() const {
    const int margin = appearance.px(15);
    return rect().adjusted(margin, margin, -margin, -margin);
}

QRect CourseCard::trendArea() const {
    const int width = std::min(appearance.px(112), content().width() * 2 / 5);
    return {
        content().right() - width, rect().top() + appearance.px(countTop + 2), width,
        appearance.px(countHeight - 8)};
}

QRect CourseCard::mostMissedArea() const {
    const int height = QFontMetrics(appearance.font()).height() + 2;
    return {content().left(), content().bottom() - height, content().width(), height};
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
    drawHeading(painter);
    if (isPlaceholder)
        return drawPlaceholder(painter);
    drawCount(painter);
    drawLevels(painter);
    drawMostMissed(painter);

    SparklineData line;
    for (std::size_t i = 0; i < card.trend.size(); ++i) {
        line.points.push_back({std::int64_t(i), card.trend[i]});
        line.highest = std::max(line.highest, card.trend[i]);
    }
    line.days = std::int64_t(card.trend.size()) - 1;
    // A single day is drawn at the right end, where today always is.
    if (card.trend.size() == 1)
        line = {.points = {{1, card.trend[0]}}, .days = 1, .highest = line.highest};
    drawSparkline(painter, trendArea(), line, theme.link, appearance);
}

void CourseCard::drawHeading(QPainter &painter) const {
    const int tile = appearance.px(26);
    const QRect area = content();
    painter.drawPixmap(
        area.topLeft(),
        courseTile(
            card.courseID, card.name, tile, devicePixelRatioF(),
            courseIcon(defaults, card.courseID)));
    QString name = qstring(card.name);
    name.replace(u'\n', u' ');
    drawRun(
        painter,
        QRect(
            area.left() + tile + appearance.px(10), area.top(),
            area.width() - tile - appearance.px(10), tile),
        name, appearance.font(1.04, QFont::DemiBold), appearance.theme().text);
}

/// Bars where the figures will be.
void CourseCard::drawPlaceholder(QPainter &painter) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(appearance.theme().separator);
    const QRect area = content();
    const auto bar = [&](double top, double height, int width) {
        const int tall = appearance.px(height);
        painter.drawRoundedRect(
            QRect(area.left(), rect().top() + appearance.px(top), width, tall), tall / 3.0,
            tall / 3.0);
    };
    bar(countTop + 8, 26, area.width() / 4);
    bar(levelsTop + 4, 14, area.width() / 2);
    bar(marksTop + 4, 10, area.width() / 3);
}

void CourseCard::drawCount(QPainter &painter) const {
    const Theme &theme = appearance.theme();
    QRect area(
        content().left(), rect().top() + appearance.px(countTop),
        trendArea().left() - content().left() - appearance.px(6), appearance.px(countHeight));
    const bool allOK = card.flagged() == 0;
    const QFont large = appearance.font(allOK ? 1.8 : 2.4, QFont::Bold);
    area = drawRun(
        painter, area, allOK ? QStringLiteral("All OK") : QString::number(card.flagged()), large,
        allOK ? theme.ok.text : theme.text);
    // Both texts share a baseline.
    area.translate(
        appearance.px(6),
        QFontMetrics(large).ascent() / 2 - QFontMetrics(appearance.font()).ascent() / 2 -
            appearance.px(1));
    area.setRight(trendArea().left() - appearance.px(6));
    drawRun(
        painter, area,
        allOK ? qstring(plural(card.total, "student"))
              : QStringLiteral("flagged of %1").arg(card.total),
        appearance.font(), theme.secondaryText);
}

void CourseCard::drawLevels(QPainter &painter) const {
    const Theme &theme = appearance.theme();
    int left = content().left();
    const int top = rect().top() + appearance.px(levelsTop);
    for (const RiskLevel level : allRiskLevels) {
        const std::int64_t count = card.levels[level];
        if (count == 0)
            continue;
        const QString text = qstring(levelCount(count, level));
        const QSize size = pillSize(appearance.style(), text);
        if (left + size.width() > content().right() + appearance.px(8))
            break;
        drawPill(
            painter, QRect(QPoint(left, top), size), text, levelColors(theme, level),
            appearance.style());
        left += size.width() + appearance.px(6);
    }
    QString marks = qstring(movementMarks(card));
    if (card.awaitingFollowUp > 0) {
        if (!marks.isEmpty())
            marks += QStringLiteral("   ");
        marks += qstring(awaitingText(card.awaitingFollowUp));
    }
    drawRun(
        painter,
        QRect(
            content().left(), rect().top() + appearance.px(marksTop), content().width(),
            QFontMetrics(appearance.font()).height()),
        marks, appearance.font(), theme.secondaryText);
}

void CourseCard::drawMostMissed(QPainter &painter) const {
    if (!card.mostMissed)
        return;
    const Theme &theme = appearance.theme();
    const QString tail = QStringLiteral(" — ") + qstring(plural(card.mostMissed->count, "student"));
    QRect area = mostMissedArea();
    area = drawRun(
        painter, area, QStringLiteral("Most missed: "), appearance.font(), theme.secondaryText);
    // The title is elided before the count.
    const int tailWidth = QFontMetrics(appearance.font()).horizontalAdvance(tail);
    QString name = qstring(card.mostMissed->title);
    name.replace(u'\n', u' ');
    area = drawRun(
        painter, area.adjusted(0, 0, -tailWidth, 0), name, appearance.font(1, QFont::DemiBold),
        theme.text);
    area.setRight(mostMissedArea().right() + 2);
    drawRun(painter, area, tail, appearance.font(), theme.secondaryText);
}

bool CourseCard::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return KeyboardButton::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    QString tip = qstring(card.name);
    if (trendArea().contains(help->pos()))
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
