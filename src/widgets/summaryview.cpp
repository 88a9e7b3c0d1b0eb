#include "widgets/summaryview.h"

#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"
#include "widgets/levelcolors.h"

#include <QPainter>

namespace ellwynd {

namespace {

constexpr double numberHeight = 42;
constexpr double captionHeight = 18;
constexpr double levelHeight = 44;
constexpr double levelHeightWide = 26;
constexpr double gap = 6;
constexpr double ringOutset = 5;

} // namespace

SummaryView::SummaryView(QWidget *parent) : KeyboardButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void SummaryView::present(
    const WidgetContent &newContent, const VisualStyle &newStyle, bool newWide) {
    content = newContent;
    visualStyle = newStyle;
    wide = newWide;
    QString name = qstring(content.headline);
    for (const WidgetLevelCount &count : content.levels)
        name += QStringLiteral(", ") + qstring(levelCountText(count));
    setAccessibleName(name);
    update();
}

void SummaryView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus()) {
        drawFocusRing(
            painter, QRectF(rect()).adjusted(1, 1, -1, -1), visualStyle.px(7),
            visualStyle.theme.accent);
    }
    // The ring is around the figures, which are in line with the other parts of the card.
    const QRect figures = rect().adjusted(outset(), outset(), -outset(), -outset());
    painter.translate(figures.topLeft());
    drawNumber(painter, figures.size());
    drawLevels(painter, figures.size());
}

int SummaryView::outset() const {
    return visualStyle.px(ringOutset);
}

void SummaryView::drawNumber(QPainter &painter, const QSize &area) const {
    const QString number = QString::number(content.flagged);
    const QString caption = qstring(content.attention);
    const QFont large = visualStyle.font(2.7, QFont::Bold);
    QRect line(0, 0, area.width(), visualStyle.px(numberHeight));
    painter.setFont(large);
    painter.setPen(content.flagged == 0 ? visualStyle.theme.ok.text : visualStyle.theme.text);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, number);
    if (wide) {
        line.setLeft(painter.fontMetrics().horizontalAdvance(number) + visualStyle.px(8));
        // Aligned with the number's baseline.
        line.translate(0, visualStyle.px(6));
        painter.setFont(visualStyle.font(1.1));
    } else {
        line = QRect(0, visualStyle.px(numberHeight), area.width(), visualStyle.px(captionHeight));
        painter.setFont(visualStyle.font(0.92));
    }
    painter.setPen(underMouse() ? visualStyle.theme.text : visualStyle.theme.secondaryText);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, caption);
}

void SummaryView::drawLevels(QPainter &painter, const QSize &area) const {
    const int between = visualStyle.px(gap);
    const int each = (area.width() - 2 * between) / 3;
    const int tall = visualStyle.px(wide ? levelHeightWide : levelHeight);
    QRect box(0, area.height() - tall, each, tall);
    for (const WidgetLevelCount &count : content.levels) {
        // Levels without students are drawn in neutral colours.
        const LevelColors neutral{visualStyle.theme.secondaryText, visualStyle.theme.surface};
        const LevelColors &colors =
            count.count > 0 ? levelColors(visualStyle.theme, count.level) : neutral;
        const QString text = wide ? qstring(levelCountText(count)) : QString();
        drawPill(painter, box, text, colors, visualStyle, {.radius = 5});
        if (!wide) {
            painter.setPen(colors.text);
            painter.setFont(visualStyle.font(1.2, QFont::Bold));
            drawElided(
                painter, box.adjusted(0, visualStyle.px(4), 0, -visualStyle.px(18)),
                Qt::AlignCenter, QString::number(count.count));
            painter.setFont(visualStyle.font(0.76, QFont::Medium));
            drawElided(
                painter, box.adjusted(0, visualStyle.px(22), 0, -visualStyle.px(3)),
                Qt::AlignCenter, qstring(widgetLevelName(count.level)));
        }
        box.translate(each + between, 0);
    }
}

} // namespace ellwynd
