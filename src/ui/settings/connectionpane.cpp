#include "ui/settings/connectionpane.h"

#include "app/shell/samplemode.h"
#include "net/task.h"
#include "ui/connection/connectionform.h"
#include "ui/support/alert.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/textlink.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace ellwynd {

ConnectionPane::ConnectionPane(
    UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Connection"), defaults, appearance), check(check) {
    if (defaults.value(preferences::sampleData))
        makeSampleNote();
    else
        makeForm();
}

void ConnectionPane::makeSampleNote() {
    addNote(QStringLiteral("You are in the sample college. Your connection to Canvas, with its "
                           "address and its token, is "
                           "untouched while you are here."));
    auto *leave = new QPushButton(qstring(samplemode::menuTitle(true)));
    leave->setToolTip(QStringLiteral("Restart with your own courses"));
    leave->setAutoDefault(false);
    leave->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    addWidget(leave);
    connect(leave, &QPushButton::clicked, this, &ConnectionPane::leaveSampleRequested);
}

void ConnectionPane::makeForm() {
    form = new ConnectionForm(check, this);
    testButton = new QPushButton(QStringLiteral("Test Connection"));
    saveButton = new QPushButton(QStringLiteral("Save"));
    signOutButton = new QPushButton(QStringLiteral("Sign Out"));
    for (QLineEdit *field : {form->address, form->token})
        field->setMinimumWidth(appearance.px(260));
    addWidget(form->addressStatus);
    addRow(QStringLiteral("Canvas address"), form->address);
    addWidget(form->suggestion);
    form->suggestion->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    addWidget(form->status);
    addRow(QStringLiteral("Access token"), form->token);
    form->tokenPage->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    addWidget(form->tokenPage);
    addWidget(form->tokenSteps);

    signOutButton->setToolTip(qstring(signOutHelp));
    for (QPushButton *button : {testButton, saveButton, signOutButton})
        button->setAutoDefault(false);
    auto *buttons = new QWidget;
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(testButton);
    row->addWidget(saveButton);
    row->addStretch(1);
    row->addWidget(signOutButton);
    addWidget(buttons);
    addWidget(form->progress);

    const auto startSaving = [this] { detach(save(), "Saving the connection"); };
    connect(
        testButton, &QPushButton::clicked, this, [this] { detach(test(), "The connection test"); });
    connect(saveButton, &QPushButton::clicked, this, startSaving);
    connect(form->token, &QLineEdit::returnPressed, this, startSaving);
    connect(form, &ConnectionForm::connectionDidChange, this, &ConnectionPane::connectionDidChange);
    connect(signOutButton, &QPushButton::clicked, this, &ConnectionPane::confirmSignOut);
    ConnectionPane::showPreferences();
}

void ConnectionPane::reload() {
    if (form == nullptr)
        return;
    shownAddress = check.savedAddress();
    setBusy(false);
    form->reload();
}

/// The address may also be changed by another process or another computer.
void ConnectionPane::showPreferences() {
    if (form == nullptr)
        return;
    signOutButton->setEnabled(!busy && !check.savedAddress().empty());
    if (!busy && isVisible() && check.savedAddress() != shownAddress)
        reload();
}

void ConnectionPane::setBusy(bool isBusy) {
    busy = isBusy;
    testButton->setEnabled(!busy);
    saveButton->setEnabled(!busy);
    signOutButton->setEnabled(!busy && !check.savedAddress().empty());
}

QCoro::Task<> ConnectionPane::test() {
    const QPointer<ConnectionPane> self(this);
    testButton->setEnabled(false);
    auto testing = form->test();
    const ConnectionOutcome outcome = co_await testing;
    if (!self)
        co_return;
    testButton->setEnabled(true);
    Q_EMIT announcementRequested(ConnectionForm::announcement(outcome));
}

QCoro::Task<> ConnectionPane::save() {
    const QPointer<ConnectionPane> self(this);
    if (busy)
        co_return;
    setBusy(true);
    auto saving = form->save();
    co_await saving;
    if (!self)
        co_return;
    shownAddress = check.savedAddress();
    setBusy(false);
}

void ConnectionPane::confirmSignOut() {
    QMessageBox *box = plainAlert(this, qstring(signOutQuestion), qstring(signOutWarning));
    auto *confirm = box->addButton(QStringLiteral("Sign Out"), QMessageBox::AcceptRole);
    auto *cancel = box->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    box->setDefaultButton(cancel);
    connect(confirm, &QPushButton::clicked, this, [this] { detach(signOut(), "Signing out"); });
    box->open();
}

QCoro::Task<> ConnectionPane::signOut() {
    const QPointer<ConnectionPane> self(this);
    if (busy)
        co_return;
    setBusy(true);
    auto leaving = form->signOut();
    co_await leaving;
    if (!self)
        co_return;
    shownAddress = check.savedAddress();
    setBusy(false);
}

} // namespace ellwynd
