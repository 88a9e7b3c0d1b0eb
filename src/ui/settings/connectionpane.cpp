#include "ui/settings/connectionpane.h"

#include "net/task.h"
#include "ui/connection/connectionform.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace ellwynd {

ConnectionPane::ConnectionPane(
    UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Connection"), defaults, appearance),
      check(check),
      form(new ConnectionForm(check, this)),
      testButton(new QPushButton(QStringLiteral("Test Connection"))) {
    addWidget(form->status);
    for (QLineEdit *field : {form->address, form->token})
        field->setMinimumWidth(appearance.px(260));
    addRow(QStringLiteral("Canvas address"), form->address);
    addRow(QStringLiteral("Access token"), form->token);
    form->tokenPage->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    addWidget(form->tokenPage);

    auto *saveButton = new QPushButton(QStringLiteral("Save"));
    auto *signOutButton = new QPushButton(QStringLiteral("Sign Out"));
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

    connect(
        testButton, &QPushButton::clicked, this, [this] { detach(test(), "The connection test"); });
    connect(saveButton, &QPushButton::clicked, this, &ConnectionPane::save);
    connect(form->token, &QLineEdit::returnPressed, this, &ConnectionPane::save);
    connect(signOutButton, &QPushButton::clicked, this, &ConnectionPane::signOut);
}

void ConnectionPane::reload() {
    form->reload();
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

void ConnectionPane::stopTest() {
    form->stopTest();
    testButton->setEnabled(true);
}

void ConnectionPane::save() {
    stopTest();
    const ConnectionOutcome outcome = form->save();
    if (!outcome.succeeded)
        return;
    form->reload();
    Q_EMIT connectionDidChange();
    form->showOutcome(outcome);
}

void ConnectionPane::signOut() {
    stopTest();
    check.signOut();
    form->reload();
    Q_EMIT connectionDidChange();
}

} // namespace ellwynd
