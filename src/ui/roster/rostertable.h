// The table of students.
#pragma once

#include "ui/roster/rostermodel.h"

#include <QTableView>

#include <optional>
#include <set>
#include <string>

namespace ellwynd {

class Appearance;
class RosterDelegate;

/// Shows the students of a query, worst first until a heading is clicked; a third click on it
/// restores that order. New rows keep the selected students. Rows are as wide as the view.
class RosterTable : public QTableView {
    Q_OBJECT

  public:
    RosterTable(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows the roster. The first student of another roster than before is selected.
    /// @param now for "last active".
    void setRoster(const RosterView &roster, const RosterQuery &query, Date now);
    void setQuery(const RosterQuery &query);
    /// Sorts as a click on the heading does.
    void sortBy(RosterSort sort);
    [[nodiscard]] const RosterQuery &query() const { return model->query(); }
    [[nodiscard]] const RosterRows &roster() const { return model->roster(); }
    void setCompact(bool on);

    /// The selected rows, from top to bottom.
    [[nodiscard]] SharedList<RiskRow> selectedRows() const;
    /// Selects exactly those of these students who are on the roster, and scrolls to the first. A
    /// filter that hides one of them is removed.
    void selectStudents(const std::set<StudentKey> &students);
    /// How many students are shown, without the folded ones.
    [[nodiscard]] int shownCount() const { return model->studentCount(); }
    /// Whether there is a row: a student, or the line of the folded students.
    [[nodiscard]] bool hasRows() const { return model->rowCount() > 0; }

  Q_SIGNALS:
    void selectionDidChange();
    /// This view has changed the query.
    void queryDidChange();
    void gradesRequested(const ellwynd::RiskRow &row);
    void contactRemovalRequested(const ellwynd::RiskRow &row);
    /// The details of the selected student should be shown.
    void detailsRequested();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void leaveEvent(QEvent *event) override;
    /// Return shows the details of the current student, or the folded students.
    void keyPressEvent(QKeyEvent *event) override;
    void selectionChanged(
        const QItemSelection &newlySelected, const QItemSelection &deselected) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    /// The end of the row that the cursor leaves is redrawn too.
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

  private:
    [[nodiscard]] std::optional<StudentKey> currentStudent() const;
    /// Selects the students without scrolling, and returns the first of them.
    QModelIndex select(const std::set<StudentKey> &students, std::optional<StudentKey> current);
    /// Applies a change to the model, and restores the selection.
    template<class Change>
    void changeRows(Change change, bool keepsPlace);
    void unfold();
    void lay();
    [[nodiscard]] int figureWidth(int column, const QFontMetrics &metrics) const;
    void showSortIndicator();

    const Appearance &appearance;
    RosterModel *model;
    RosterDelegate *delegate;
    /// The selected rows; absent until they are asked for.
    mutable std::optional<SharedList<RiskRow>> selected;
    bool changingRows = false;
    bool compact = false;
    /// Of the roster on screen; absent for a term.
    std::optional<std::int64_t> courseID;
    std::string title;
};

} // namespace ellwynd
