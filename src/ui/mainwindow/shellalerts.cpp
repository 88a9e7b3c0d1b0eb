#include "ui/mainwindow/shellalerts.h"

#include "app/shell/appdelegate.h"
#include "app/shell/samplemode.h"
#include "app/updates/updater.h"
#include "generated/version.h"
#include "ui/support/alert.h"
#include "uikit/convert.h"

#include <QMessageBox>
#include <QPushButton>

namespace ellwynd {

ShellAlerts::ShellAlerts(AppDelegate &shell, Updater &updater, QWidget *window)
    : QObject(window), shell(shell), window(window) {
    connect(&shell, &AppDelegate::relaunchDidFail, this, [this](const QString &message) {
        showMessage(QStringLiteral("Ellwynd couldn’t be restarted."), message);
    });
    connect(&updater, &Updater::checkDidFindNothing, this, [this] {
        showMessage(
            QStringLiteral("You’re up to date."),
            QStringLiteral("Ellwynd %1 is the newest version.").arg(qstring(version)));
    });
    connect(&updater, &Updater::checkDidFindUpdate, this, [this](const QString &found) {
        showMessage(
            QStringLiteral("Ellwynd %1 is available.").arg(found),
            QStringLiteral("Install it the same way as this version."));
    });
    connect(&updater, &Updater::checkDidFail, this, [this](const QString &message) {
        showMessage(QStringLiteral("Couldn’t check for updates."), message);
    });
}

void ShellAlerts::switchSampleMode() {
    if (shell.isSampleMode()) {
        shell.switchSampleMode();
        return;
    }
    QMessageBox *box =
        plainAlert(window, qstring(samplemode::question), qstring(samplemode::explanation));
    auto *restart = box->addButton(qstring(samplemode::confirm), QMessageBox::AcceptRole);
    box->addButton(qstring(samplemode::cancel), QMessageBox::RejectRole);
    box->setDefaultButton(restart);
    // Queued, so that the alert closes before the program quits.
    connect(
        restart, &QPushButton::clicked, &shell, &AppDelegate::switchSampleMode,
        Qt::QueuedConnection);
    box->open();
}

void ShellAlerts::showMessage(const QString &message, const QString &detail) {
    QMessageBox *box = plainAlert(window, message, detail);
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    box->open();
}

} // namespace ellwynd
