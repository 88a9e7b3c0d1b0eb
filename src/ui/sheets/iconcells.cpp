#include "ui/sheets/iconcells.h"

#include "theme/courseglyphs.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/painting.h"

#include <QPainter>

namespace ellwynd {

namespace {

constexpr int iconSide = 38;
constexpr int colorSide = 30;

QString capitalised(const std::string &word) {
    const QString text = qstring(word);
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString iconName(const std::string &word) {
    return word.empty() ? QStringLiteral("Subject letters") : capitalised(word);
}

IconSheetCell::IconSheetCell(
    std::string word, const QString &name, int side, const Appearance &appearance)
    : word(std::move(word)), appearance(appearance) {
    setAccessibleName(name);
    setToolTip(name);
    setFixedSize(appearance.px(side), appearance.px(side));
}

bool IconSheetCell::hitButton(const QPoint &position) const {
    return rect().contains(position);
}

void IconSheetCell::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = QRectF(rect()).adjusted(3, 3, -3, -3);
    paintCell(painter, inside);
    if (hasFocus()) {
        drawFocusRing(
            painter, QRectF(rect()).adjusted(1, 1, -1, -1), inside.width() * 0.3,
            appearance.theme().accent);
    }
}

IconCell::IconCell(const std::string &word, const QString &initials, const Appearance &appearance)
    : IconSheetCell(word, iconName(word), iconSide, appearance), initials(initials) {}

void IconCell::setTileColor(const QColor &color) {
    tile = color;
    update();
}

void IconCell::paintCell(QPainter &painter, const QRectF &box) const {
    const Theme &theme = appearance.theme();
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? tile : underMouse() ? theme.controlPressed : theme.controlHover);
    painter.drawRoundedRect(box, box.width() * 0.26, box.width() * 0.26);
    const QColor ink = isChecked() ? QColor(Qt::white) : theme.text;
    const int margin = int(box.width() * 0.2);
    if (drawCourseGlyph(painter, word, box.adjusted(margin, margin, -margin, -margin), ink))
        return;
    QFont font = appearance.font(1, QFont::Bold);
    font.setPixelSize(std::max(6, int(box.width() * 0.34)));
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(box, Qt::AlignCenter, initials);
}

ColorCell::ColorCell(const std::string &word, const QColor &color, const Appearance &appearance)
    : IconSheetCell(
          word, word.empty() ? QStringLiteral("Automatic colour") : capitalised(word), colorSide,
          appearance),
      color(color) {}

void ColorCell::paintCell(QPainter &painter, const QRectF &box) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(box);
    if (isChecked()) {
        painter.setPen(
            QPen(Qt::white, box.width() / 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const auto at = [&box](double x, double y) {
            return QPointF(box.left() + box.width() * x, box.top() + box.height() * y);
        };
        painter.drawPolyline(QPolygonF{at(0.27, 0.53), at(0.43, 0.69), at(0.73, 0.34)});
    } else if (word.empty()) {
        QFont font = appearance.font(1, QFont::Bold);
        font.setPixelSize(std::max(6, int(box.width() * 0.5)));
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(box, Qt::AlignCenter, QStringLiteral("A"));
    }
}

} // namespace ellwynd
