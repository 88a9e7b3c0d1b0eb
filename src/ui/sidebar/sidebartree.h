// The sidebar's tree view.
#pragma once

#include <QTreeView>

namespace ellwynd {

class Appearance;

/// A tree that paints its own arrows and a rounded selection.
class SidebarTree : public QTreeView {
    Q_OBJECT

  public:
    SidebarTree(const Appearance &appearance, QWidget *parent);

  protected:
    void mousePressEvent(QMouseEvent *event) override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &options, const QModelIndex &index)
        const override;
    void
    drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override;

  private:
    const Appearance &appearance;
};

} // namespace ellwynd
