// The middle of the window: a course's or a term's heading and its students.
#pragma once

#include "preferences/userdefaults.h"
#include "ui/roster/rostertable.h"

#include <QWidget>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ElidedLabel;
class InsightBand;
class MainWindowController;

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

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void showRoster();
    void focusStudents();
    void showHeader();
    void showCount();
    void showProgress();
    void showInsight();
    void applyAppearance();
    /// Puts the header's controls beside the title, or in rows below it where there is no room.
    void arrangeHeader();

    MainWindowController &controller;
    UserDefaults &defaults;
    const Appearance &appearance;
    QLabel *tile;
    ElidedLabel *title;
    ElidedLabel *subtitle;
    ElidedLabel *movement;
    QLabel *stale;
    QLineEdit *filter;
    QPushButton *thresholds;
    QPushButton *missingWork;
    QPushButton *refresh;
    QStackedWidget *stack;
    QWidget *messagePage;
    QLabel *message;
    QProgressBar *progress;
    QPushButton *connectButton;
    InsightBand *insight;
    QWidget *insightFrame;
    RosterTable *students;
    QWidget *header;
    QBoxLayout *headerLayout;
    QBoxLayout *controls;
    QWidget *buttons;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
