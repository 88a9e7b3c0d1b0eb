// The table of students.
#pragma once

#include "ui/roster/rostermodel.h"

#include <QTableView>
#include <QTimer>

#include <set>

namespace ellwynd {

class Appearance;
class RosterDelegate;

/// Rows worst first until a heading is clicked; a third click on it brings that order back. Keeps
/// the selected students through new rows of the same roster.
class RosterTable : public QTableView {
    Q_OBJECT

  public:
    RosterTable(const Appearance &appearance, QWidget *parent = nullptr);

    /// The course of each row shows in the roster of a term.
    void setRoster(const RosterView &roster, Date now);
    void setFilter(const QString &typed);
    void setCompact(bool on);

    /// The selected rows, from top to bottom.
    [[nodiscard]] std::vector<RiskRow> selectedRows() const;
    /// Selects exactly these students, as far as they are shown, and scrolls to the first.
    void selectStudents(const std::set<StudentKey> &students);
    [[nodiscard]] int shownCount() const { return filter->rowCount(); }

  Q_SIGNALS:
    void selectionDidChange();
    void gradesRequested(const ellwynd::RiskRow &row);
    void assignmentRequested(const ellwynd::RiskRow &row, std::int64_t assignmentID);

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void leaveEvent(QEvent *event) override;
    /// Return shows all missing work of the current row.
    void keyPressEvent(QKeyEvent *event) override;
    void
    selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

  private:
    void sizeColumns();
    void sizeRows();
    void sortClicked(int column);

    const Appearance &appearance;
    RosterModel *model;
    RosterFilter *filter;
    RosterDelegate *delegate;
    QTimer rowSizing;
    bool changingRows = false;
};

} // namespace ellwynd
