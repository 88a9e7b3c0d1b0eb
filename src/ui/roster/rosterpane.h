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
    void clearFilter();

  Q_SIGNALS:
    void thresholdsRequested();
    void missingWorkRequested();
    void refreshRequested();
    void connectionRequested();
    void contextMenuRequested(const QPoint &globalPosition);

  private:
    void showRoster();
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
    QPushButton *connectButton;
    QPushButton *retryButton;
    InsightBand *insight;
    QWidget *insightFrame;
    RosterTable *students;
    /// The selection for which the filter was typed.
    std::optional<Selection> filtered;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
