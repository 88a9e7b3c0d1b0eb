#include "ui/mainwindow/connectionviews.h"

#include "app/mainwindowcontroller.h"
#include "ui/connection/connectioncards.h"
#include "ui/support/announce.h"
#include "ui/support/cardpage.h"
#include "ui/welcome/welcomewindow.h"

#include <QStackedWidget>

namespace ellwynd {

ConnectionViews::ConnectionViews(
    UserDefaults &defaults, ConnectionCheck &connection, MainWindowController &controller,
    const Appearance &appearance, QStackedWidget &panes, QWidget &window)
    : QObject(&window),
      defaults(defaults),
      connection(connection),
      controller(controller),
      appearance(appearance),
      panes(panes),
      window(window) {}

void ConnectionViews::showPage() {
    if (page == nullptr) {
        cards = new ConnectionCards(connection, appearance);
        page = cardPage::page(QStringLiteral("Not connected"), {cards}, appearance);
        panes.addWidget(page);
        connect(cards, &ConnectionCards::sampleRequested, this, &ConnectionViews::sampleRequested);
        connect(
            cards, &ConnectionCards::connectionDidChange, &controller,
            &MainWindowController::connectionDidChange);
        connect(
            cards, &ConnectionCards::announcementRequested, &window,
            [this](const QString &text) { announce(window, text); });
    } else if (panes.currentWidget() == page) {
        return;
    } else {
        cards->reload();
    }
    panes.setCurrentWidget(page);
    cards->focusFields();
}

void ConnectionViews::showWelcomeIfDue() {
    const auto isConnected = [this] {
        return controller.roster().state != RosterView::State::notConnected;
    };
    if (!WelcomeWindow::isDue(defaults, false))
        return;
    if (!isConnected())
        return showWelcome();
    // It is known later, when the token was looked for.
    connect(
        &controller, &MainWindowController::statusDidChange, this,
        [this, isConnected, waiting = true]() mutable {
            if (waiting && !isConnected() && WelcomeWindow::isDue(defaults, false))
                showWelcome();
            // A later sign-out does not open it.
            waiting = waiting && isConnected() && controller.courses().isEmpty();
        });
}

void ConnectionViews::showWelcome() {
    auto *welcome = new WelcomeWindow(defaults, connection, controller, appearance, &window);
    connect(welcome, &WelcomeWindow::sampleRequested, this, &ConnectionViews::sampleRequested);
    connect(
        welcome, &WelcomeWindow::connectionDidChange, &controller,
        &MainWindowController::connectionDidChange);
    connect(
        welcome, &WelcomeWindow::announcementRequested, welcome,
        [welcome](const QString &text) { announce(*welcome, text); });
    welcome->show();
}

} // namespace ellwynd
