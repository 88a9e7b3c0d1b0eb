#include "ui/connection/connectionform.h"

#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QDesktopServices>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QUrl>

namespace ellwynd {

ConnectionForm::ConnectionForm(ConnectionCheck &check, QObject *parent)
    : QObject(parent),
      address(new QLineEdit),
      token(new QLineEdit),
      tokenPage(new TextLink(QStringLiteral("Open the page where access tokens are created"))),
      status(secondaryLabel(nullptr)),
      progress(new QProgressBar),
      check(check) {
    address->setPlaceholderText(QStringLiteral("https://canvas.example.edu"));
    address->setAccessibleName(QStringLiteral("Canvas address"));
    token->setEchoMode(QLineEdit::Password);
    token->setAccessibleName(QStringLiteral("Access token"));
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Checking the connection"));
    progress->hide();
    connect(tokenPage, &TextLink::openRequested, this, &ConnectionForm::openTokenPage);
}

ConnectionForm::~ConnectionForm() {
    testStop.request_stop();
}

void ConnectionForm::reload() {
    const ConnectionState state = check.state();
    address->setText(qstring(state.address));
    token->clear();
    token->setPlaceholderText(qstring(state.placeholder));
    // Whether a token is saved is unknown, so the field asks for none.
    token->setEnabled(!state.keychainUnavailable);
    showStatus(*status, qstring(state.status), false);
}

QCoro::Task<ConnectionOutcome> ConnectionForm::test() {
    const QPointer<ConnectionForm> self(this);
    setTesting(true);
    showStatus(*status, QStringLiteral("Checking %1…").arg(address->text().trimmed()), false);
    testStop = std::stop_source();
    auto testing = check.test(
        address->text().toStdString(), token->text().toStdString(), testStop.get_token());
    const ConnectionOutcome outcome = co_await testing;
    if (self) {
        setTesting(false);
        showOutcome(outcome);
    }
    co_return outcome;
}

void ConnectionForm::stopTest() {
    if (testStop.request_stop())
        setTesting(false);
}

ConnectionOutcome ConnectionForm::save() {
    ConnectionOutcome outcome =
        check.save(address->text().toStdString(), token->text().toStdString());
    showOutcome(outcome);
    return outcome;
}

void ConnectionForm::showOutcome(const ConnectionOutcome &outcome) const {
    showStatus(*status, qstring(outcome.status), !outcome.succeeded);
}

QString ConnectionForm::announcement(const ConnectionOutcome &outcome) {
    return (outcome.succeeded ? QStringLiteral("Connection test succeeded. ")
                              : QStringLiteral("Connection test failed. ")) +
        qstring(outcome.status);
}

void ConnectionForm::setTesting(bool testing) const {
    address->setReadOnly(testing);
    token->setReadOnly(testing);
    progress->setVisible(testing);
}

void ConnectionForm::openTokenPage() const {
    if (const auto page = ConnectionCheck::tokenPage(address->text().toStdString()))
        QDesktopServices::openUrl(QUrl(qstring(*page)));
    else
        showStatus(*status, qstring(tokenPageNeedsAddress), true);
}

} // namespace ellwynd
