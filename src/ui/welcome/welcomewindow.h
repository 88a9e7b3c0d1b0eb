// The welcome window with the first-run steps.
#pragma once

#include "preferences/userdefaults.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ConnectionCards;
class ConnectionCheck;
class MainWindowController;
class StepDots;

/// Three steps: what the program is, the choice between Canvas and the sample college, and what
/// comes next. It may be closed at any step and opens again at that step. It deletes itself when it
/// is closed.
class WelcomeWindow : public QDialog {
    Q_OBJECT

  public:
    /// The values of "Onboarding.step".
    enum Step : std::int64_t { notStarted, introduction, choice, finished };

    /// The arguments must outlive the window.
    WelcomeWindow(
        UserDefaults &defaults, ConnectionCheck &check, MainWindowController &controller,
        const Appearance &appearance, QWidget *parent = nullptr);

    /// Whether to show the window at start: the steps are not finished, and the program shows
    /// neither a Canvas nor the sample college.
    [[nodiscard]] static bool isDue(const UserDefaults &, bool connected);

    [[nodiscard]] Step step() const { return current; }

  Q_SIGNALS:
    /// The teacher asked for the sample college; the receiver asks for confirmation and switches.
    void sampleRequested();
    /// An address was saved with its token.
    void connectionDidChange();
    /// Screen readers should announce this text.
    void announcementRequested(const QString &text);

  private:
    QWidget *makeEnd();
    void showStep(Step step);
    void showAttention();
    void showStudents();

    UserDefaults &defaults;
    MainWindowController &controller;
    const Appearance &appearance;
    Step current = notStarted;
    ConnectionCards *cards;
    StepDots *dots;
    QStackedWidget *pages;
    QLabel *connectedAs;
    /// How many students need attention, once the courses are scored.
    QLabel *attention;
    QPushButton *studentsButton;
    QPushButton *back;
    QPushButton *forward;
};

} // namespace ellwynd
