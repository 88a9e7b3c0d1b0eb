#include "ui/support/levelpill.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"

#include <QPainter>

namespace ellwynd {

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

int drawLevel(
    QPainter &painter, const QRect &rect, std::optional<RiskLevel> level,
    const Appearance &appearance) {
    const QString text = qstring(levelName(level));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QSize size = pillSize(appearance.style(), text);
    if (level) {
        const QRect pill(QPoint(rect.left(), rect.center().y() - size.height() / 2), size);
        drawPill(painter, pill, text, levelColors(appearance.theme(), *level), appearance.style());
    } else {
        painter.setPen(appearance.theme().secondaryText);
        painter.setFont(appearance.font());
        drawLine(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    painter.restore();
    return size.width();
}

LevelPill::LevelPill(const Appearance &appearance, QWidget *parent)
    : QWidget(parent), appearance(appearance) {
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
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
    return pillSize(appearance.style(), qstring(levelName(level)));
}

void LevelPill::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawLevel(painter, rect(), level, appearance);
}

} // namespace ellwynd
