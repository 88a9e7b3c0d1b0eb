#include "ui/mainwindow/helpcommands.h"

#include "generated/version.h"
#include "ui/about/aboutwindow.h"
#include "ui/help/helpwindow.h"
#include "ui/mainwindow/mainmenus.h"
#include "ui/support/alert.h"
#include "uikit/convert.h"

#include <QAction>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

namespace ellwynd {

HelpCommands::HelpCommands(
    const MainMenus &menus, UserDefaults &defaults, const Appearance &appearance, QWidget &window)
    : QObject(&window), menus(menus), defaults(defaults), appearance(appearance), window(window) {
    connect(menus.help, &QAction::triggered, this, [this] { showTopic("getting-started"); });
    connect(menus.keyboardShortcuts, &QAction::triggered, this, [this] { showTopic("keyboard"); });
    connect(menus.whatsNew, &QAction::triggered, this, [this] { help().showReleaseNotes(); });
    connect(menus.sendFeedback, &QAction::triggered, this, &HelpCommands::sendFeedback);
    connect(menus.about, &QAction::triggered, this, &HelpCommands::showAbout);
}

/// Created on first use, when the menus have their shortcuts.
HelpWindow &HelpCommands::help() {
    if (helpWindow == nullptr)
        helpWindow = new HelpWindow(defaults, appearance, menus.shortcuts(), &window);
    return *helpWindow;
}

void HelpCommands::showTopic(const std::string &id) {
    help().showTopic(id);
}

void HelpCommands::showAbout() {
    auto *box = new AboutWindow(appearance, &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->show();
}

void HelpCommands::sendFeedback() {
    const QUrl mail(QStringLiteral("mailto:") + qstring(feedbackAddress));
    if (QDesktopServices::openUrl(mail))
        return;
    QMessageBox *box = plainAlert(
        &window, QStringLiteral("Couldn’t open your email app"),
        QStringLiteral("Write to ") + qstring(feedbackAddress) + QStringLiteral("."));
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    box->open();
}

} // namespace ellwynd
