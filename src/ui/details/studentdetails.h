// The details pane: one student with every reason, or several with what they have in common.
#pragma once

#include "app/roster/selectionsummary.h"
#include "app/roster/studenthistory.h"

#include <QWidget>

#include <memory>

class QMenu;
class QScrollArea;
class QVBoxLayout;

namespace ellwynd {

class Appearance;

/// The name, the level and the commands stay in place; the figures, the reasons and the history
/// scroll below them.
class StudentDetails : public QWidget {
    Q_OBJECT

  public:
    StudentDetails(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows one student, a summary of several, or a hint when there is none.
    /// @param history of the student when there is exactly one; otherwise ignored.
    /// @param summary of the students when there are several; otherwise ignored.
    void
    show(SharedList<RiskRow> rows, StudentHistory history, const SelectionSummary &summary = {});
    using QWidget::show;
    /// Whether contacts are remembered, so that "Mark as Contacted" is enabled.
    void setContactsEnabled(bool enabled);
    /// Moves the focus to the first link, or else to the first command.
    void focusContents();

  Q_SIGNALS:
    void writeRequested(const ellwynd::SharedList<ellwynd::RiskRow> &students);
    /// The menu of messages is about to open.
    void messagesRequested(QMenu *menu);
    void contactsRequested(const ellwynd::SharedList<ellwynd::RiskRow> &students);
    /// A student should be shown in another course.
    void studentRequested(const ellwynd::StudentKey &student);
    void gradesRequested(const ellwynd::RiskRow &row);
    void assignmentRequested(const ellwynd::RiskRow &row, std::int64_t assignmentID);
    /// The help topic with this id should be shown.
    void helpRequested(const std::string &topic);

  protected:
    void showEvent(QShowEvent *event) override;

  private:
    void contentsDidChange();
    void rebuildIfOutdated();
    void rebuild();
    /// Puts the new contents in the place of the old.
    void replace(QWidget *newHead, QWidget *newBody);
    void deleteSoon(QWidget *contents);
    void addHeading(QVBoxLayout &column, const RiskRow &row);
    void addFigures(QVBoxLayout &column, const RiskRow &row);
    void addReasons(QVBoxLayout &column, const RiskRow &row);
    void addTerm(QVBoxLayout &column, const RiskRow &row);
    void addOutreach(QVBoxLayout &column);
    void addSelectionHeading(QVBoxLayout &column);
    void addSelection(QVBoxLayout &column);
    void addButtons(QVBoxLayout &column);
    void addSection(QVBoxLayout &column, const QString &title);
    /// A sentence with a button that leads to a help topic.
    [[nodiscard]] QWidget *explained(QWidget *sentence, const std::string &text, const char *topic);
    void addAssignments(QVBoxLayout &column, const std::vector<AssignmentRef> &assignments);

    const Appearance &appearance;
    SharedList<RiskRow> rows;
    StudentHistory history;
    SelectionSummary summary;
    bool contactsEnabled = true;
    bool isOutdated = true;
    /// The students of the contents on screen.
    std::vector<StudentKey> builtFor;
    QWidget *head;
    QScrollArea *scroll;
    /// What is scrolled, with the body in it.
    QWidget *page;
    QWidget *body;
    /// Old contents, which may still be in use by the caller.
    std::vector<std::unique_ptr<QWidget>> replaced;
};

} // namespace ellwynd
