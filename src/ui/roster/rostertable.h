// The table of students.
#pragma once

#include "ui/roster/rostermodel.h"

#include <QTableView>
#include <QTimer>

#include <optional>
#include <set>
#include <string>

namespace ellwynd {

class Appearance;
class RosterDelegate;

/// Shows rows worst first until a heading is clicked; a third click on it restores that order. New
/// rows keep the selected students.
class RosterTable : public QTableView {
    Q_OBJECT

  public:
    RosterTable(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows the roster; the course column only for a term. @param now for "last active".
    void setRoster(const RosterView &roster, Date now);
    void setFilter(const QString &typed);
    void setCompact(bool on);

    /// The selected rows, from top to bottom.
    [[nodiscard]] std::vector<RiskRow> selectedRows() const;
    /// Selects exactly those of these students who are shown, and scrolls to the first.
    void selectStudents(const std::set<StudentKey> &students);
    [[nodiscard]] int shownCount() const { return filter->rowCount(); }

  Q_SIGNALS:
    void selectionDidChange();
    void gradesRequested(const ellwynd::RiskRow &row);
    void assignmentRequested(const ellwynd::RiskRow &row, std::int64_t assignmentID);

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void leaveEvent(QEvent *event) override;
    /// Return expands the current row.
    void keyPressEvent(QKeyEvent *event) override;
    void
    selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

  private:
    [[nodiscard]] std::optional<StudentKey> currentStudent() const;
    /// Selects the students without scrolling, and returns the first of them.
    QModelIndex select(const std::set<StudentKey> &students, std::optional<StudentKey> current);
    void sizeColumns();
    void sizeRows();
    void sortClicked(int column);

    const Appearance &appearance;
    RosterModel *model;
    RosterFilter *filter;
    RosterDelegate *delegate;
    QTimer rowSizing;
    bool changingRows = false;
    /// Of the roster on screen; absent for a term.
    std::optional<std::int64_t> courseID;
    std::string title;
};

} // namespace ellwynd
