#include "widgets/courserow.h"

#include "theme/courseicon.h"
#include "uikit/painting.h"
#include "widgets/levelcolors.h"

#include <QKeyEvent>
#include <QPainter>

#include <numeric>

namespace ellwynd {

namespace {

constexpr double tileSize = 26;
constexpr double inset = 6;
constexpr double gap = 4;

QFont nameFont(const Look &look) {
    return look.font(0.96, QFont::Medium);
}

QFont countFont(const Look &look) {
    return look.font(0.8, QFont::DemiBold);
}

QFont summaryFont(const Look &look) {
    return look.font(0.86);
}

} // namespace

CourseRow::CourseRow(QWidget *parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void CourseRow::present(
    const WidgetRow &row, const CourseIcon &chosen, const Look &newLook, bool summary) {
    shown = row;
    icon = chosen;
    look = newLook;
    withSummary = summary && !row.levels.empty();
    setAccessibleName(QString::fromStdString(row.spoken));
    updateToolTip();
    update();
}

QRect CourseRow::textRect() const {
    return rect().adjusted(look.px(inset + tileSize + 9), look.px(2), -look.px(inset), -look.px(2));
}

QRect CourseRow::nameRect() const {
    QRect name = textRect();
    name.setHeight(name.height() / 2);
    if (withSummary) {
        const QFontMetrics metrics(summaryFont(look));
        name.setRight(
            name.right() - metrics.horizontalAdvance(QString::fromStdString(shown.summary)) -
            look.px(8));
    }
    return name;
}

void CourseRow::updateToolTip() {
    const QString name = QString::fromStdString(shown.label);
    const bool cut = QFontMetrics(nameFont(look)).horizontalAdvance(name) > nameRect().width();
    setToolTip(cut ? plainToolTip(name) : QString());
}

void CourseRow::resizeEvent(QResizeEvent *event) {
    QAbstractButton::resizeEvent(event);
    updateToolTip();
}

void CourseRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? look.theme.selection : look.theme.hover);
        painter.drawRoundedRect(rect(), look.px(8), look.px(8));
    }
    const int tile = look.px(tileSize);
    painter.drawPixmap(
        look.px(inset), (height() - tile) / 2,
        courseTile(
            shown.courseID, shown.nameHidden ? "" : shown.label, tile, devicePixelRatioF(), icon));

    const QRect text = textRect();
    const QRect name = nameRect();
    painter.setFont(nameFont(look));
    painter.setPen(look.theme.text);
    drawElided(
        painter, name, Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(shown.label));
    if (withSummary) {
        painter.setFont(summaryFont(look));
        painter.setPen(look.theme.secondaryText);
        painter.drawText(
            QRect(text.topLeft(), QSize(text.width(), name.height())),
            Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(shown.summary));
    }
    drawCounts(painter, QRect(QPoint(text.left(), name.bottom() + 1), text.bottomRight()));
    if (hasFocus())
        drawFocusRing(painter, rect(), look);
}

void CourseRow::drawCounts(QPainter &painter, const QRect &line) const {
    struct Pill {
        LevelColors colors;
        QString text;
        int width;
    };
    const QFont font = countFont(look);
    const auto pill = [&](const LevelColors &colors, const QString &text) {
        return Pill{colors, text, pillWidth(look, font, text)};
    };
    std::vector<Pill> pills;
    for (const WidgetLevelCount &count : shown.levels)
        pills.push_back(pill(
            levelColors(look.theme, count.level), QString::fromStdString(levelCountText(count))));
    if (pills.empty())
        pills.push_back(pill(look.theme.ok, QString::fromStdString(shown.summary)));
    const int width = std::accumulate(
        pills.begin(), pills.end(), look.px(gap) * (int(pills.size()) - 1),
        [](int sum, const Pill &each) { return sum + each.width; });

    painter.setFont(font);
    if (width > line.width()) {
        painter.setPen(look.theme.secondaryText);
        drawElided(
            painter, line, Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(shown.summary));
        return;
    }
    const int height = painter.fontMetrics().height() + look.px(1);
    int x = line.left();
    for (const Pill &each : pills) {
        const QRect place(x, line.center().y() - height / 2, each.width, height);
        drawPill(painter, place, look, each.colors, each.text);
        x += each.width + look.px(gap);
    }
}

void CourseRow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace ellwynd
