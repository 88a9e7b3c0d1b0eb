// The roster in the middle of the main window.
#pragma once

#include "app/courses/courseselection.h"
#include "preferences/userdefaults.h"
#include "ui/roster/rostertable.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ChipBar;
class ElidedLabel;
class InsightBand;
class MainWindowController;
class RosterHeader;

/// Shows the controller's roster: its heading, movement and insight, and the students, or a message
/// when there are none.
class RosterPane : public QWidget {
    Q_OBJECT

  public:
    RosterPane(
        MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent = nullptr);

    [[nodiscard]] RosterTable *table() const { return students; }
    void focusFilter();

  Q_SIGNALS:
    void thresholdsRequested();
    void missingWorkRequested();
    void coverageRequested();
    void refreshRequested();
    void contextMenuRequested(const QPoint &globalPosition);
    /// The rows shown have changed, and with them whether there are any.
    void rowsDidChange();

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    [[nodiscard]] bool isShort() const;
    void showRoster();
    /// Shows the table, or the message that stands in its place.
    void showRows();
    void setQuery(const RosterQuery &query);
    void resetFilter();
    [[nodiscard]] RosterQuery queryOf(const Selection &selection) const;
    void keepQuery(const RosterQuery &query);
    void focusStudents();
    void showCount();
    void showProgress();
    void showInsight();
    void applyAppearance();
    void connectViews();
    void preferenceChanged(std::string_view key);

    MainWindowController &controller;
    UserDefaults &defaults;
    const Appearance &appearance;
    RosterHeader *header;
    ElidedLabel *movement;
    QLabel *notes;
    QStackedWidget *stack;
    QWidget *messagePage;
    QLabel *message;
    QProgressBar *progress;
    QPushButton *retryButton;
    QPushButton *resetButton;
    ChipBar *chips;
    QWidget *insightFrame;
    InsightBand *insight;
    RosterTable *students;
    /// The selection to which the query belongs.
    std::optional<Selection> queried;
    /// What the teacher asked to see in each course and term of this run.
    std::vector<std::pair<Selection, RosterQuery>> queries;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
