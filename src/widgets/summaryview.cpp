#include "widgets/summaryview.h"

#include "uikit/painting.h"
#include "widgets/levelcolors.h"

#include <QPainter>

namespace ellwynd {

namespace {

constexpr double numberHeight = 42;
constexpr double wordsHeight = 18;
constexpr double levelHeight = 44;
constexpr double levelHeightWide = 26;
constexpr double gap = 6;

} // namespace

SummaryView::SummaryView(QWidget *parent) : QWidget(parent) {}

void SummaryView::present(const WidgetContent &newContent, const Look &newLook, bool newWide) {
    content = newContent;
    look = newLook;
    wide = newWide;
    QString name = QString::fromStdString(content.headline);
    for (const WidgetLevelCount &count : content.levels)
        name += QStringLiteral(", ") + QString::fromStdString(levelCountText(count));
    setAccessibleName(name);
    update();
}

void SummaryView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawNumber(painter);
    drawLevels(painter);
}

void SummaryView::drawNumber(QPainter &painter) const {
    const QString number = QString::number(content.flagged);
    const QString words = QString::fromStdString(content.attention);
    const QFont large = look.font(2.7, QFont::Bold);
    QRect line(0, 0, width(), look.px(numberHeight));
    painter.setFont(large);
    painter.setPen(content.flagged == 0 ? look.theme.ok.text : look.theme.text);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, number);
    if (wide) {
        line.setLeft(painter.fontMetrics().horizontalAdvance(number) + look.px(8));
        // On the number's baseline, which stands lower than its middle.
        line.translate(0, look.px(6));
        painter.setFont(look.font(1.1));
    } else {
        line = QRect(0, look.px(numberHeight), width(), look.px(wordsHeight));
        painter.setFont(look.font(0.92));
    }
    painter.setPen(look.theme.secondaryText);
    drawElided(painter, line, Qt::AlignLeft | Qt::AlignVCenter, words);
}

void SummaryView::drawLevels(QPainter &painter) const {
    const int between = look.px(gap);
    const int each = (width() - 2 * between) / 3;
    const int tall = look.px(wide ? levelHeightWide : levelHeight);
    QRect box(0, height() - tall, each, tall);
    for (const WidgetLevelCount &count : content.levels) {
        // A level that nobody is at draws no eye.
        const LevelColors quiet{look.theme.secondaryText, look.theme.surface};
        const LevelColors &colors = count.count > 0 ? levelColors(look.theme, count.level) : quiet;
        const std::string_view level = widgetLevelName(count.level);
        const QString name = QString::fromUtf8(level.data(), qsizetype(level.size()));
        if (wide) {
            painter.setFont(look.font(0.92, QFont::DemiBold));
            drawPill(painter, box, look, colors, QString::fromStdString(levelCountText(count)));
        } else {
            drawPill(painter, box, look, colors, {});
            painter.setPen(colors.text);
            painter.setFont(look.font(1.2, QFont::Bold));
            drawElided(
                painter, box.adjusted(0, look.px(4), 0, -look.px(18)), Qt::AlignCenter,
                QString::number(count.count));
            painter.setFont(look.font(0.76, QFont::Medium));
            drawElided(
                painter, box.adjusted(0, look.px(22), 0, -look.px(3)), Qt::AlignCenter, name);
        }
        box.translate(each + between, 0);
    }
}

} // namespace ellwynd
