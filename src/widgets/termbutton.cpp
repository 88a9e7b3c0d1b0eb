#include "widgets/termbutton.h"

#include "outputs/snapshot/widgettexts.h"
#include "uikit/painting.h"

#include <QKeyEvent>
#include <QPainter>

namespace ellwynd {

namespace {

constexpr double inset = 4;
constexpr double chevronRoom = 16;

QFont titleFont(const Look &look) {
    return look.font(1.0, QFont::DemiBold);
}

QString parameterText(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace

TermButton::TermButton(QWidget *parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setAccessibleDescription(parameterText(widgetTermPrompt));
}

void TermButton::present(const QString &term, const Look &newLook) {
    look = newLook;
    title = term;
    setAccessibleName(parameterText(widgetTermParameter) + QStringLiteral(": ") + title);
    update();
}

QSize TermButton::sizeHint() const {
    const QFontMetrics metrics(titleFont(look));
    return {
        metrics.horizontalAdvance(title) + 2 * look.px(inset) + look.px(chevronRoom),
        metrics.height() + look.px(4)};
}

QRect TermButton::titleRect() const {
    return rect().adjusted(look.px(inset), 0, -look.px(chevronRoom), 0);
}

void TermButton::resizeEvent(QResizeEvent *event) {
    QAbstractButton::resizeEvent(event);
    const bool cut = QFontMetrics(titleFont(look)).horizontalAdvance(title) > titleRect().width();
    setToolTip(cut ? plainToolTip(title) : QString());
}

void TermButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? look.theme.controlPressed : look.theme.controlHover);
        painter.drawRoundedRect(rect(), look.px(6), look.px(6));
    }
    painter.setFont(titleFont(look));
    painter.setPen(look.theme.text);
    drawElided(painter, titleRect(), Qt::AlignLeft | Qt::AlignVCenter, title);
    const int shown = std::min(painter.fontMetrics().horizontalAdvance(title), titleRect().width());
    const QPointF tip(titleRect().left() + shown + look.px(9), rect().center().y() + look.px(2));
    const double arm = look.px(3);
    painter.setPen(QPen(look.theme.secondaryText, look.px(1.5), Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(QPolygonF{tip - QPointF(arm, arm), tip, tip + QPointF(arm, -arm)});
    if (hasFocus())
        drawFocusRing(painter, rect(), look);
}

void TermButton::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace ellwynd
