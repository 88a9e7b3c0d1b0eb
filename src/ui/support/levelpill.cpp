#include "ui/support/levelpill.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QFontMetrics>
#include <QPainter>

namespace ellwynd {

namespace {

constexpr double pillFontFactor = 0.92;

QFont pillFont(const Appearance &appearance) {
    return appearance.font(pillFontFactor, QFont::DemiBold);
}

} // namespace

const LevelColors &levelColors(const Theme &theme, RiskLevel level) {
    switch (level) {
    case RiskLevel::atRisk:
        return theme.atRisk;
    case RiskLevel::concern:
        return theme.concern;
    case RiskLevel::watch:
        break;
    }
    return theme.watch;
}

QSize pillSize(const Appearance &appearance, const QString &text) {
    const QFontMetrics metrics(pillFont(appearance));
    return {
        metrics.horizontalAdvance(text) + appearance.px(16), metrics.height() + appearance.px(3)};
}

void drawPill(
    QPainter &painter, const QRect &pill, const QString &text, RiskLevel level,
    const Appearance &appearance) {
    const LevelColors &colors = levelColors(appearance.theme(), level);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(pill, appearance.px(6), appearance.px(6));
    painter.setPen(colors.text);
    painter.setFont(pillFont(appearance));
    painter.drawText(pill, Qt::AlignCenter, text);
}

int drawLevel(
    QPainter &painter, const QRect &rect, std::optional<RiskLevel> level,
    const Appearance &appearance) {
    const QString text = qstring(levelName(level));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QSize size = pillSize(appearance, text);
    if (level) {
        const QRect pill(QPoint(rect.left(), rect.center().y() - size.height() / 2), size);
        drawPill(painter, pill, text, *level, appearance);
    } else {
        painter.setPen(appearance.theme().secondaryText);
        painter.setFont(appearance.font());
        painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    painter.restore();
    return size.width();
}

LevelPill::LevelPill(const Appearance &look, QWidget *parent) : QWidget(parent), appearance(look) {
    connect(&look, &Appearance::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void LevelPill::setLevel(std::optional<RiskLevel> newLevel) {
    level = newLevel;
    setAccessibleName(QStringLiteral("Level: ") + qstring(levelName(level)));
    updateGeometry();
    update();
}

QSize LevelPill::sizeHint() const {
    return pillSize(appearance, qstring(levelName(level)));
}

void LevelPill::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawLevel(painter, rect(), level, appearance);
}

} // namespace ellwynd
