// Draws the rows of a roster and handles clicks on their links.
#pragma once

#include "ui/roster/rostermodel.h"
#include "ui/roster/whylayout.h"

#include <QStyledItemDelegate>

#include <set>

class QTableView;

namespace ellwynd {

class RosterDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    RosterDelegate(const Appearance &appearance, const RosterFilter &filter, QTableView *view);

    void setCompact(bool on) { compact = on; }
    /// Hides again what `expand` showed.
    void collapseAll() { expanded.clear(); }
    /// Shows the names of all missing work in a row.
    void expand(const QModelIndex &index);
    /// How many names of missing work do not fit in a row.
    [[nodiscard]] std::size_t hiddenNames(const RiskRow &row) const;

    [[nodiscard]] QSize
    sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override;
    bool editorEvent(
        QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;
    bool helpEvent(
        QHelpEvent *event, QAbstractItemView *where, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

    /// Call when the pointer leaves the rows.
    void clearHover();

  Q_SIGNALS:
    void gradesRequested(const ellwynd::RiskRow &row);
    void assignmentRequested(const ellwynd::RiskRow &row, std::int64_t assignmentID);
    void rowHeightDidChange(const QModelIndex &index);

  private:
    [[nodiscard]] WhyLayout layoutOf(const RiskRow &row, int cellWidth) const;
    [[nodiscard]] std::optional<WhyTarget>
    targetAt(QPoint position, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void drawArrow(QPainter &painter, const QRect &line, const RosterChange &change) const;
    void drawContact(QPainter &painter, const QRect &cell, const OutreachOutcome &outcome) const;
    [[nodiscard]] bool showsFollowUpBelow(const RiskRow &row) const;
    [[nodiscard]] int horizontalPadding() const;
    [[nodiscard]] int verticalPadding() const;

    const Appearance &appearance;
    const RosterFilter &filter;
    QTableView *view;
    bool compact = false;
    std::set<StudentKey> expanded;
    QPersistentModelIndex hoveredIndex;
    std::optional<WhyTarget> hovered;
};

} // namespace ellwynd
