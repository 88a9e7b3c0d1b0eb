// The first-run steps.
#pragma once

#include "preferences/userdefaults.h"

#include <QCoro/QCoroTask>
#include <QDialog>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ConnectionCheck;
class ConnectionForm;
class StepDots;

/// What the program is, then the choice between one's own Canvas and the sample college, then the
/// end. It may be closed at any step and opens again at the step it was left at. A window is made
/// for one showing and deletes itself when it is closed.
class WelcomeWindow : public QDialog {
    Q_OBJECT

  public:
    /// As "Onboarding.step" stores them.
    enum Step : std::int64_t { notStarted, introduction, choice, finished };

    WelcomeWindow(
        UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance,
        QWidget *parent = nullptr);

    /// Whether a start of the program should show it: the steps are not finished, and there is
    /// neither a Canvas nor the sample college to look at.
    [[nodiscard]] static bool isDue(const UserDefaults &, bool connected);

    [[nodiscard]] Step step() const { return current; }

  Q_SIGNALS:
    /// The teacher wants the sample college; what that takes is the receiver's to ask and to do.
    void sampleRequested();
    /// An address was saved with its token.
    void connectionDidChange();
    /// A screen reader should say this now.
    void announcementRequested(const QString &text);

  private:
    QWidget *makeChoice();
    void showStep(Step step);
    void setChecking(bool checking);
    QCoro::Task<> connectToCanvas();

    UserDefaults &defaults;
    const Appearance &appearance;
    Step current = notStarted;
    ConnectionForm *form;
    StepDots *dots;
    QStackedWidget *pages;
    QLabel *connectedAs;
    QPushButton *connectButton;
    QPushButton *sampleButton;
    QPushButton *back;
    QPushButton *forward;
};

} // namespace ellwynd
