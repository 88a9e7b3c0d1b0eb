#include "ui/sidebar/sidebardelegate.h"

#include "theme/courseicon.h"
#include "ui/sidebar/sidebarmodel.h"
#include "ui/support/appearance.h"
#include "ui/support/drawcourselabel.h"
#include "ui/support/levelpill.h"
#include "uikit/painting.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

namespace {

const CourseLabel &labelOf(const QModelIndex &index) {
    return static_cast<const SidebarModel *>(index.model())->labelOf(index);
}

} // namespace

SidebarDelegate::SidebarDelegate(
    const UserDefaults &defaults, const Appearance &appearance, QObject *parent)
    : QStyledItemDelegate(parent), defaults(defaults), appearance(appearance) {}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const {
    if (!index.parent().isValid())
        return {appearance.px(120), appearance.px(32)};
    return {appearance.px(120), appearance.px(labelOf(index).code.empty() ? 30 : 40)};
}

void SidebarDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (index.parent().isValid())
        paintCourse(*painter, option, index);
    else if (SidebarModel::isDashboard(index))
        paintDashboard(*painter, option, index);
    else
        paintTerm(*painter, option, index);
    painter->restore();
}

void SidebarDelegate::paintDashboard(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const int side = appearance.px(20);
    QRect tile(option.rect.left() - appearance.px(4), 0, side, side);
    tile.moveTop(option.rect.center().y() - side / 2 + 1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.secondaryText);
    painter.drawRoundedRect(tile, side * 0.25, side * 0.25);
    // Four cards.
    painter.setBrush(theme.sidebar);
    const double cell = side * 0.24;
    for (const double x : {0.22, 0.54}) {
        for (const double y : {0.22, 0.54}) {
            painter.drawRoundedRect(
                QRectF(tile.left() + side * x, tile.top() + side * y, cell, cell), 1, 1);
        }
    }
    painter.setFont(appearance.font(1, QFont::Medium));
    painter.setPen(theme.text);
    drawLine(
        painter, option.rect.adjusted(side + appearance.px(4), 0, 0, 0),
        Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
}

void SidebarDelegate::paintTerm(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    QFont font = appearance.font(0.86, QFont::DemiBold);
    font.setLetterSpacing(QFont::PercentageSpacing, 103);
    painter.setFont(font);
    painter.setPen(selected ? appearance.theme().text : appearance.theme().secondaryText);
    const QRect text = option.rect.adjusted(0, appearance.px(4), -appearance.px(8), 0);
    const QString title = index.data().toString().toUpper();
    drawElided(painter, text, Qt::AlignLeft | Qt::AlignVCenter, title);
}

void SidebarDelegate::paintCourse(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    QRect row = option.rect.adjusted(-appearance.px(10), 0, -appearance.px(12), 0);
    if (index.data(SidebarModel::flaggedRole).isValid())
        row = paintCount(painter, row, index);
    const CourseLabel &label = labelOf(index);
    const int tile = appearance.px(label.code.empty() ? 20 : 26);
    const std::int64_t courseID = index.data(SidebarModel::courseIDRole).toLongLong();
    painter.drawPixmap(
        row.left(), row.center().y() - tile / 2 + 1,
        courseTile(
            courseID, index.data().toString().toStdString(), tile,
            painter.device()->devicePixelRatioF(), courseIcon(defaults, courseID)));
    row.setLeft(row.left() + tile + appearance.px(8));
    drawCourseLabel(painter, row, label, QFont::Normal, appearance);
}

/// Draws the number of flagged students in the colours of the worst level, or a tick.
QRect SidebarDelegate::paintCount(QPainter &painter, QRect row, const QModelIndex &index) const {
    const Theme &theme = appearance.theme();
    const QVariant worst = index.data(SidebarModel::worstLevelRole);
    const QString count = index.data(SidebarModel::flaggedRole).toString();
    painter.setFont(appearance.font(0.86, QFont::Medium));
    const int width =
        std::max(appearance.px(20), textWidth(painter.font(), count) + appearance.px(11));
    const int height = appearance.px(18);
    const QRect badge(row.right() - width, row.center().y() - height / 2 + 1, width, height);
    if (worst.isValid()) {
        const LevelColors &colors = levelColors(theme, RiskLevel(worst.toInt()));
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.fill);
        painter.drawRoundedRect(badge, height / 2.0, height / 2.0);
        painter.setPen(colors.text);
        drawLine(painter, badge, Qt::AlignCenter, count);
    } else {
        painter.setPen(theme.ok.text);
        drawLine(painter, badge, Qt::AlignCenter, QStringLiteral("✓"));
    }
    row.setRight(badge.left() - appearance.px(6));
    return row;
}

} // namespace ellwynd
