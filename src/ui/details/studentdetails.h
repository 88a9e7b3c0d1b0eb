// The details pane: one student with every reason, or several with the commands for them.
#pragma once

#include "app/roster/studenthistory.h"

#include <QScrollArea>

class QMenu;
class QVBoxLayout;

namespace ellwynd {

class Appearance;

class StudentDetails : public QScrollArea {
    Q_OBJECT

  public:
    StudentDetails(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows one student, a summary of several, or a hint when there is none.
    /// @param history of the student when there is exactly one; otherwise ignored.
    void show(std::vector<RiskRow> rows, StudentHistory history);
    /// Whether contacts are remembered, so that "Mark as Contacted" is enabled.
    void setContactsEnabled(bool enabled);

  Q_SIGNALS:
    /// The menu of messages is about to open.
    void messagesRequested(QMenu *menu);
    void contactsRequested(const std::vector<ellwynd::RiskRow> &students);
    void gradesRequested(const ellwynd::RiskRow &row);
    void assignmentRequested(const ellwynd::RiskRow &row, std::int64_t assignmentID);

  private:
    void rebuild();
    void addHeading(QVBoxLayout &column, const RiskRow &row);
    void addFigures(QVBoxLayout &column, const RiskRow &row);
    void addReasons(QVBoxLayout &column, const RiskRow &row);
    void addTerm(QVBoxLayout &column);
    void addOutreach(QVBoxLayout &column);
    void addSelection(QVBoxLayout &column);
    void addButtons(QVBoxLayout &column);
    void addSection(QVBoxLayout &column, const QString &title);

    const Appearance &appearance;
    std::vector<RiskRow> rows;
    StudentHistory history;
    bool contactsEnabled = true;
};

} // namespace ellwynd
