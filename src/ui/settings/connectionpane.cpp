#include "ui/settings/connectionpane.h"

#include "canvas/connectioncheck.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace ellwynd {

ConnectionPane::ConnectionPane(
    UserDefaults &store, ConnectionCheck &connection, const Appearance &look)
    : SettingsPane(QStringLiteral("Connection"), store, look),
      check(connection),
      address(new QLineEdit),
      token(new QLineEdit),
      progress(new QProgressBar),
      testButton(new QPushButton(QStringLiteral("Test Connection"))) {
    status = addNote({});
    address->setPlaceholderText(QStringLiteral("https://canvas.example.edu"));
    address->setMinimumWidth(look.px(260));
    token->setEchoMode(QLineEdit::Password);
    token->setMinimumWidth(look.px(260));
    addRow(QStringLiteral("Canvas address"), address);
    addRow(QStringLiteral("Access token"), token);

    auto *page = new TextLink(QStringLiteral("Open the page where access tokens are created"));
    page->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    addWidget(page);

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
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Checking the connection"));
    progress->hide();
    addWidget(progress);

    connect(testButton, &QPushButton::clicked, this, [this] { test(); });
    connect(saveButton, &QPushButton::clicked, this, &ConnectionPane::save);
    connect(token, &QLineEdit::returnPressed, this, &ConnectionPane::save);
    connect(signOutButton, &QPushButton::clicked, this, &ConnectionPane::signOut);
    connect(page, &TextLink::pressed, this, &ConnectionPane::openTokenPage);
}

void ConnectionPane::say(const std::string &text, bool failed) {
    showStatus(*status, qstring(text), failed);
}

void ConnectionPane::reload() {
    const ConnectionState state = check.state();
    address->setText(qstring(state.address));
    token->clear();
    token->setPlaceholderText(qstring(state.placeholder));
    // Nobody can tell whether a token is saved, so none is asked for.
    token->setEnabled(!state.keychainUnavailable);
    say(state.status);
}

QCoro::Task<> ConnectionPane::test() {
    const QPointer<ConnectionPane> self(this);
    testButton->setEnabled(false);
    progress->show();
    say("Checking " + address->text().trimmed().toStdString() + "…");
    auto testing = check.test(address->text().toStdString(), token->text().toStdString());
    const ConnectionOutcome outcome = co_await testing;
    if (!self)
        co_return;
    testButton->setEnabled(true);
    progress->hide();
    say(outcome.status, !outcome.succeeded);
    Q_EMIT announced(
        (outcome.succeeded ? QStringLiteral("Connection test succeeded. ")
                           : QStringLiteral("Connection test failed. ")) +
        qstring(outcome.status));
}

void ConnectionPane::save() {
    const ConnectionOutcome outcome =
        check.save(address->text().toStdString(), token->text().toStdString());
    if (outcome.succeeded) {
        reload();
        Q_EMIT connectionDidChange();
    }
    say(outcome.status, !outcome.succeeded);
}

void ConnectionPane::signOut() {
    check.signOut();
    reload();
    Q_EMIT connectionDidChange();
}

void ConnectionPane::openTokenPage() {
    if (const auto page = ConnectionCheck::tokenPage(address->text().toStdString()))
        QDesktopServices::openUrl(QUrl(qstring(*page)));
    else
        say(std::string(tokenPageNeedsAddress), true);
}

} // namespace ellwynd
