#include "ui/sidebar/sidebartree.h"

#include "ui/sidebar/sidebarmodel.h"
#include "ui/support/appearance.h"

#include <QMouseEvent>
#include <QPainter>

namespace ellwynd {

SidebarTree::SidebarTree(const Appearance &appearance, QWidget *parent)
    : QTreeView(parent), appearance(appearance) {}

void SidebarTree::mousePressEvent(QMouseEvent *event) {
    // The right button opens a menu, and must not open the course.
    if (event->button() != Qt::RightButton)
        QTreeView::mousePressEvent(event);
}

void SidebarTree::drawRow(
    QPainter *painter, const QStyleOptionViewItem &options, const QModelIndex &index) const {
    if (selectionModel()->isSelected(index)) {
        const Theme &theme = appearance.theme();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setBrush(theme.selection);
        painter->setPen(hasFocus() ? QPen(theme.accent, 1.5) : QPen(Qt::NoPen));
        painter->drawRoundedRect(
            QRectF(options.rect).adjusted(6, index.parent().isValid() ? 1 : 4, -6, -1), 6, 6);
        painter->restore();
    }
    QTreeView::drawRow(painter, options, index);
}

void SidebarTree::drawBranches(
    QPainter *painter, const QRect &rect, const QModelIndex &index) const {
    if (index.parent().isValid() || SidebarModel::isDashboard(index))
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(
        QPen(appearance.theme().secondaryText, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const double r = appearance.px(3);
    painter->translate(rect.right() - 2 * r, rect.center().y() + appearance.px(3));
    if (isExpanded(index))
        painter->rotate(90);
    painter->drawPolyline(QPolygonF{{-r / 2, -r}, {r / 2, 0}, {-r / 2, r}});
    painter->restore();
}

} // namespace ellwynd
