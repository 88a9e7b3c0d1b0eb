#include "widgets/courserow.h"

#include "theme/courseicon.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"
#include "uikit/tooltip.h"
#include "widgets/levelcolors.h"

#include <QPainter>

#include <numeric>

namespace ellwynd {

namespace {

constexpr double tileSize = 26;
constexpr double inset = 6;
constexpr double gap = 4;

QFont nameFont(const VisualStyle &style) {
    return style.font(0.96, QFont::Medium);
}

QFont summaryFont(const VisualStyle &style) {
    return style.font(0.86);
}

} // namespace

CourseRow::CourseRow(QWidget *parent) : KeyboardButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void CourseRow::present(
    const WidgetRow &newRow, const CourseIcon &newIcon, const VisualStyle &newStyle,
    bool showsSummary) {
    shown = newRow;
    icon = newIcon;
    visualStyle = newStyle;
    hasSummary = showsSummary && !shown.levels.empty();
    setAccessibleName(qstring(shown.accessibleText));
    updateToolTip();
    update();
}

QRect CourseRow::textRect() const {
    return rect().adjusted(
        visualStyle.px(inset + tileSize + 9), visualStyle.px(2), -visualStyle.px(inset),
        -visualStyle.px(2));
}

QRect CourseRow::nameRect() const {
    QRect name = textRect();
    name.setHeight(name.height() / 2);
    if (hasSummary) {
        const QFontMetrics metrics(summaryFont(visualStyle));
        name.setRight(
            name.right() - metrics.horizontalAdvance(qstring(shown.summary)) - visualStyle.px(8));
    }
    return name;
}

void CourseRow::updateToolTip() {
    const QString name = qstring(shown.label);
    const bool cut =
        QFontMetrics(nameFont(visualStyle)).horizontalAdvance(name) > nameRect().width();
    setToolTip(cut ? plainToolTip(name) : QString());
}

void CourseRow::resizeEvent(QResizeEvent *event) {
    KeyboardButton::resizeEvent(event);
    updateToolTip();
}

void CourseRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? visualStyle.theme.selection : visualStyle.theme.hover);
        painter.drawRoundedRect(rect(), visualStyle.px(8), visualStyle.px(8));
    }
    const int tile = visualStyle.px(tileSize);
    painter.drawPixmap(
        visualStyle.px(inset), (height() - tile) / 2,
        courseTile(
            shown.courseID, shown.nameHidden ? "" : shown.label, tile, devicePixelRatioF(), icon));

    const QRect text = textRect();
    const QRect name = nameRect();
    painter.setFont(nameFont(visualStyle));
    painter.setPen(visualStyle.theme.text);
    drawElided(painter, name, Qt::AlignLeft | Qt::AlignVCenter, qstring(shown.label));
    if (hasSummary) {
        painter.setFont(summaryFont(visualStyle));
        painter.setPen(visualStyle.theme.secondaryText);
        painter.drawText(
            QRect(text.topLeft(), QSize(text.width(), name.height())),
            Qt::AlignRight | Qt::AlignVCenter, qstring(shown.summary));
    }
    drawCounts(painter, QRect(QPoint(text.left(), name.bottom() + 1), text.bottomRight()));
    if (hasFocus()) {
        drawFocusRing(
            painter, QRectF(rect()).adjusted(1, 1, -1, -1), visualStyle.px(7),
            visualStyle.theme.accent);
    }
}

void CourseRow::drawCounts(QPainter &painter, const QRect &line) const {
    struct Pill {
        LevelColors colors;
        QString text;
        QSize size;
    };
    const auto pill = [&](const LevelColors &colors, const QString &text) {
        return Pill{colors, text, pillSize(visualStyle, text, compactPill)};
    };
    std::vector<Pill> pills;
    for (const WidgetLevelCount &count : shown.levels)
        pills.push_back(
            pill(levelColors(visualStyle.theme, count.level), qstring(levelCountText(count))));
    if (pills.empty())
        pills.push_back(pill(visualStyle.theme.ok, qstring(shown.summary)));
    const int width = std::accumulate(
        pills.begin(), pills.end(), visualStyle.px(gap) * (int(pills.size()) - 1),
        [](int sum, const Pill &each) { return sum + each.size.width(); });

    if (width > line.width()) {
        painter.setFont(visualStyle.font(compactPill.fontFactor, QFont::DemiBold));
        painter.setPen(visualStyle.theme.secondaryText);
        drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, qstring(shown.summary));
        return;
    }
    int x = line.left();
    for (const Pill &each : pills) {
        const QRect place(QPoint(x, line.center().y() - each.size.height() / 2), each.size);
        drawPill(painter, place, each.text, each.colors, visualStyle, compactPill);
        x += each.size.width() + visualStyle.px(gap);
    }
}

} // namespace ellwynd
