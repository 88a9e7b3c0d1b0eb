#include "ui/welcome/welcomewindow.h"

#include "app/dashboard/dashboardtexts.h"
#include "app/mainwindowcontroller.h"
#include "ui/connection/connectioncards.h"
#include "ui/support/appearance.h"
#include "ui/support/cardpage.h"
#include "ui/welcome/stepdots.h"
#include "ui/welcome/welcomepages.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

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
      cards(new ConnectionCards(check, appearance)),
      dots(new StepDots(finished, appearance, this)),
      pages(new QStackedWidget(this)),
      connectedAs(secondaryLabel(nullptr)),
      attention(plainLabel(nullptr, true)),
      studentsButton(new QPushButton),
      back(new QPushButton(QStringLiteral("Back"), this)),
      forward(new QPushButton(this)) {
    setWindowTitle(QStringLiteral("Welcome to Ellwynd"));
    setAttribute(Qt::WA_DeleteOnClose);
    pages->addWidget(welcomePages::introduction(windowTitle(), appearance));
    pages->addWidget(cardPage::page(QStringLiteral("Choose where to begin"), {cards}, appearance));
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
    connect(cards, &ConnectionCards::sampleRequested, this, &WelcomeWindow::sampleRequested);
    connect(
        cards, &ConnectionCards::connectionDidChange, this, &WelcomeWindow::connectionDidChange);
    connect(cards, &ConnectionCards::checkingDidChange, back, &QWidget::setDisabled);
    connect(cards, &ConnectionCards::connectionDidSucceed, this, [this](const QString &status) {
        connectedAs->setText(status);
        showStep(finished);
    });
    connect(
        cards, &ConnectionCards::announcementRequested, this,
        &WelcomeWindow::announcementRequested);
    const bool wasAtChoice = defaults.value(preferences::onboardingStep) == choice;
    showStep(wasAtChoice ? choice : introduction);
}

bool WelcomeWindow::isDue(const UserDefaults &defaults, bool connected) {
    return !connected && !defaults.value(preferences::sampleData) &&
        defaults.value(preferences::onboardingStep) < finished;
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
        {connectedAs, attention, cardPage::leftAligned(studentsButton)}, appearance);
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
    forward->setDefault(step != choice);
    if (step == choice)
        cards->focusFields();
    else
        forward->setFocus();
}

} // namespace ellwynd
