#include "ui/welcome/welcomewindow.h"

#include "app/dashboard/dashboardtexts.h"
#include "app/mainwindowcontroller.h"
#include "canvas/connectioncheck.h"
#include "net/task.h"
#include "ui/connection/connectionform.h"
#include "ui/support/appearance.h"
#include "ui/welcome/stepdots.h"
#include "ui/welcome/welcomepages.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace ellwynd {

WelcomeWindow::WelcomeWindow(
    UserDefaults &defaults, ConnectionCheck &check, MainWindowController &controller,
    const Appearance &appearance, QWidget *parent)
    : QDialog(parent),
      defaults(defaults),
      controller(controller),
      appearance(appearance),
      form(new ConnectionForm(check, this)),
      dots(new StepDots(finished, appearance, this)),
      pages(new QStackedWidget(this)),
      connectedAs(secondaryLabel(nullptr)),
      attention(plainLabel(nullptr, true)),
      studentsButton(new QPushButton),
      connectButton(new QPushButton(QStringLiteral("Connect"))),
      sampleButton(new QPushButton(QStringLiteral("Explore the Sample College"))),
      back(new QPushButton(QStringLiteral("Back"), this)),
      forward(new QPushButton(this)) {
    setWindowTitle(QStringLiteral("Welcome to Ellwynd"));
    setAttribute(Qt::WA_DeleteOnClose);
    pages->addWidget(welcomePages::introduction(windowTitle(), appearance));
    pages->addWidget(makeChoice());
    pages->addWidget(makeEnd());

    auto *foot = new QHBoxLayout;
    foot->addWidget(dots);
    foot->addStretch(1);
    foot->addWidget(back);
    foot->addWidget(forward);
    auto *line = new QFrame(this);
    line->setObjectName(QStringLiteral("separator"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(pages, 1);
    column->addWidget(line);
    column->addLayout(foot);
    const auto size = [this, foot] {
        const int margin = this->appearance.px(14);
        foot->setContentsMargins(this->appearance.px(24), margin, margin, margin);
        foot->setSpacing(this->appearance.px(8));
    };
    connect(&appearance, &Appearance::appearanceDidChange, this, size);
    size();
    const QSize maxSize = screen()->availableSize() * 9 / 10;
    resize(QSize(appearance.px(570), appearance.px(650)).boundedTo(maxSize));

    connect(back, &QPushButton::clicked, this, [this] { showStep(introduction); });
    connect(forward, &QPushButton::clicked, this, [this] {
        if (current == introduction)
            showStep(choice);
        else
            accept();
    });
    connect(form, &ConnectionForm::connectionDidChange, this, &WelcomeWindow::connectionDidChange);
    connect(connectButton, &QPushButton::clicked, this, [this] {
        detach(connectToCanvas(), "Connecting");
    });
    connect(sampleButton, &QPushButton::clicked, this, &WelcomeWindow::sampleRequested);
    const bool wasAtChoice = defaults.value(preferences::onboardingStep) == choice;
    showStep(wasAtChoice ? choice : introduction);
}

bool WelcomeWindow::isDue(const UserDefaults &defaults, bool connected) {
    return !connected && !defaults.value(preferences::sampleData) &&
        defaults.value(preferences::onboardingStep) < finished;
}

/// The second page: connect to Canvas, or open the sample college.
QWidget *WelcomeWindow::makeChoice() {
    using namespace welcomePages;
    form->reload();
    auto *addressLabel = text(QStringLiteral("Canvas address"));
    addressLabel->setBuddy(form->address);
    auto *tokenLabel = text(QStringLiteral("Access token"));
    tokenLabel->setBuddy(form->token);
    return page(
        QStringLiteral("Choose where to begin"),
        {card(
             QStringLiteral("Connect to Canvas"),
             {text(QStringLiteral(
                  "Enter the address you use to sign in to Canvas, and an access token, which lets "
                  "Ellwynd read Canvas as you without your password.")),
              form->addressStatus, addressLabel, form->address, leftAligned(form->suggestion),
              form->status, tokenLabel, form->token, form->tokenPage, form->tokenSteps,
              form->progress, leftAligned(connectButton)},
             appearance),
         card(
             QStringLiteral("Look around first"),
             {text(QStringLiteral(
                  "The sample college is invented: made-up courses and students, scored exactly as "
                  "real ones are. It needs no account, and you can leave it whenever you like.")),
              leftAligned(sampleButton)},
             appearance)},
        appearance);
}

/// The last page: how many students need attention, and what comes next.
QWidget *WelcomeWindow::makeEnd() {
    const auto size = [this] { attention->setFont(appearance.font(1.2, QFont::DemiBold)); };
    connect(&appearance, &Appearance::appearanceDidChange, attention, size);
    size();
    connect(studentsButton, &QPushButton::clicked, this, &WelcomeWindow::showStudents);
    connect(
        &controller.dashboard(), &Dashboard::dashboardModelDidChange, this,
        &WelcomeWindow::showAttention);
    connect(
        &controller, &MainWindowController::statusDidChange, this, &WelcomeWindow::showAttention);
    showAttention();
    return welcomePages::end(
        {connectedAs, attention, welcomePages::leftAligned(studentsButton)}, appearance);
}

void WelcomeWindow::showAttention() {
    const Dashboard &dashboard = controller.dashboard();
    const bool isKnown = dashboard.shownTerm() != nullptr;
    // Before the course list is in, the status says how far it is, or what went wrong.
    attention->setText(
        qstring(dashboard.shownTermID() ? attentionLine(dashboard) : controller.status()));
    studentsButton->setText(
        isKnown && dashboard.shownTerm()->flaggedStudents > 0 ? QStringLiteral("Show the Students")
                                                              : QStringLiteral("Show My Courses"));
    studentsButton->setEnabled(isKnown);
    if (isKnown && current == finished && forward->hasFocus()) {
        studentsButton->setDefault(true);
        studentsButton->setFocus();
    }
}

void WelcomeWindow::showStudents() {
    const Dashboard &dashboard = controller.dashboard();
    if (const DashboardTerm *term = dashboard.shownTerm(); term && term->flaggedStudents > 0)
        controller.select(TermSelection{term->id});
    else
        controller.select(DashboardSelection{});
    accept();
}

void WelcomeWindow::showStep(Step step) {
    static_assert(std::int64_t(finished) == preferences::onboardingStep.row->range.maximum);
    current = step;
    // Once finished, it stays finished when the teacher opens the window again.
    if (defaults.value(preferences::onboardingStep) < finished)
        defaults.set(preferences::onboardingStep, std::int64_t(step));
    dots->setStep(int(step));
    pages->setCurrentIndex(int(step) - 1);
    back->setVisible(step == choice);
    forward->setVisible(step != choice);
    forward->setText(step == finished ? QStringLiteral("Done") : QStringLiteral("Continue"));
    (step == choice ? connectButton : forward)->setDefault(true);
    if (step != choice)
        forward->setFocus();
    else if (form->address->text().isEmpty() || !form->token->isEnabled())
        form->address->setFocus();
    else
        form->token->setFocus();
}

void WelcomeWindow::setChecking(bool checking) {
    connectButton->setEnabled(!checking);
    back->setEnabled(!checking);
    sampleButton->setEnabled(!checking);
}

QCoro::Task<> WelcomeWindow::connectToCanvas() {
    const QPointer<WelcomeWindow> self(this);
    const QPointer<QWidget> focused(focusWidget());
    setChecking(true);
    auto testing = form->test();
    const ConnectionOutcome tested = co_await testing;
    // Closing the window cancels connecting.
    if (!self || !isVisible())
        co_return;
    ConnectionOutcome outcome = tested;
    if (tested.succeeded) {
        auto saving = form->save();
        outcome = co_await saving;
        // What is being saved cannot be stopped; only the page is not shown any more.
        if (!self)
            co_return;
    }
    setChecking(false);
    if (!outcome.succeeded) {
        if (focused)
            focused->setFocus();
        Q_EMIT announcementRequested(ConnectionForm::announcement(outcome));
        co_return;
    }
    connectedAs->setText(qstring(tested.status));
    showStep(finished);
    Q_EMIT announcementRequested(ConnectionForm::announcement(tested));
}

} // namespace ellwynd
