// The pane at the right: one student and every reason, or several and what to do with them.
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

    /// Shows the one selected student, who is selected, or what to do.
    /// @param history of the one student; ignored for any other number.
    void show(std::vector<RiskRow> selected, StudentHistory history);
    /// Whether contacts are remembered, so that one can be noted.
    void offerContacts(bool offered);

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
    bool contactsOffered = true;
};

} // namespace ellwynd
