#include "ui/connection/connectionform.h"

#include "canvas/canvaslinks.h"
#include "net/task.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"

#include <QDesktopServices>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

namespace ellwynd {

namespace {

void showText(QLabel &label, const QString &text, bool failed) {
    showStatus(label, text, failed);
    label.setHidden(text.isEmpty());
}

} // namespace

ConnectionForm::ConnectionForm(ConnectionCheck &check, QObject *parent)
    : QObject(parent),
      addressStatus(secondaryLabel(nullptr)),
      address(new QLineEdit),
      suggestion(new QPushButton),
      tokenSteps(secondaryLabel(
          nullptr,
          QStringLiteral("1. Open the page above, and sign in if Canvas asks you to.\n"
                         "2. Under “Approved Integrations”, choose “+ New Access Token”, and "
                         "then “Generate Token”.\n"
                         "3. Copy the token, which Canvas shows only once, and paste it here."))),
      tokenPage(new TextLink(QStringLiteral("Open the page where access tokens are created"))),
      status(secondaryLabel(nullptr)),
      token(new QLineEdit),
      progress(new QProgressBar),
      check(check) {
    address->setPlaceholderText(QStringLiteral("https://canvas.example.edu"));
    address->setAccessibleName(QStringLiteral("Canvas address"));
    address->installEventFilter(this);
    token->setEchoMode(QLineEdit::Password);
    token->setAccessibleName(QStringLiteral("Access token"));
    suggestion->setAutoDefault(false);
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Checking the connection"));
    for (QWidget *widget : std::initializer_list<QWidget *>{addressStatus, suggestion, progress})
        widget->hide();
    connect(tokenPage, &QAbstractButton::clicked, this, &ConnectionForm::openTokenPage);
    connect(address, &QLineEdit::textChanged, this, &ConnectionForm::showSuggestion);
    connect(suggestion, &QPushButton::clicked, this, &ConnectionForm::useSuggestion);
}

ConnectionForm::~ConnectionForm() {
    testStop.request_stop();
}

int ConnectionForm::begin() {
    stopTest();
    showText(*addressStatus, {}, false);
    return ++tasks;
}

// ---- What is saved -----------------------------------------------------------------------------

void ConnectionForm::reload() {
    address->setText(qstring(check.savedAddress()));
    token->clear();
    detach(readState(), "Reading the saved connection");
}

QCoro::Task<> ConnectionForm::readState() {
    const QPointer<ConnectionForm> self(this);
    const int task = begin();
    showText(*status, QStringLiteral("Looking for a saved token…"), false);
    auto reading = check.state();
    const ConnectionState state = co_await reading;
    if (self && task == tasks)
        showState(state);
}

void ConnectionForm::showState(const ConnectionState &state) const {
    token->setPlaceholderText(qstring(state.placeholder));
    // Whether a token is saved is unknown, so the field asks for none.
    token->setEnabled(!state.keychainUnavailable);
    showText(*status, qstring(state.status), false);
}

// ---- Actions -----------------------------------------------------------------------------------

QCoro::Task<ConnectionOutcome> ConnectionForm::test() {
    const QPointer<ConnectionForm> self(this);
    const int task = begin();
    setBusy(true);
    showProgress(QStringLiteral("Checking %1…").arg(address->text().trimmed()));
    testStop = std::stop_source();
    auto testing = check.test(
        address->text().toStdString(), token->text().toStdString(), testStop.get_token());
    const ConnectionOutcome outcome = co_await testing;
    if (self && task == tasks) {
        setBusy(false);
        showOutcome(outcome);
    }
    co_return outcome;
}

void ConnectionForm::stopTest() {
    if (testStop.request_stop())
        setBusy(false);
}

QCoro::Task<ConnectionOutcome> ConnectionForm::save() {
    const QPointer<ConnectionForm> self(this);
    const int task = begin();
    setBusy(true);
    showProgress(QStringLiteral("Saving…"));
    auto saving = check.save(address->text().toStdString(), token->text().toStdString());
    ConnectionOutcome outcome = co_await saving;
    if (self && outcome.succeeded)
        Q_EMIT connectionDidChange();
    if (!self || task != tasks)
        co_return outcome;
    setBusy(false);
    if (outcome.succeeded) {
        token->clear();
        auto reading = check.state();
        const ConnectionState state = co_await reading;
        if (!self || task != tasks)
            co_return outcome;
        showState(state);
    } else {
        showOutcome(outcome);
    }
    co_return outcome;
}

QCoro::Task<ConnectionOutcome> ConnectionForm::signOut() {
    const QPointer<ConnectionForm> self(this);
    const int task = begin();
    setBusy(true);
    showProgress(QStringLiteral("Signing out…"));
    auto leaving = check.signOut();
    const ConnectionOutcome outcome = co_await leaving;
    if (self)
        Q_EMIT connectionDidChange();
    if (!self || task != tasks)
        co_return outcome;
    setBusy(false);
    address->clear();
    token->clear();
    auto reading = check.state();
    const ConnectionState state = co_await reading;
    if (!self || task != tasks)
        co_return outcome;
    showState(state);
    if (!outcome.succeeded)
        showOutcome(outcome);
    co_return outcome;
}

// ---- What is shown -----------------------------------------------------------------------------

void ConnectionForm::showOutcome(const ConnectionOutcome &outcome) const {
    QString text = qstring(outcome.status);
    if (!outcome.advice.empty())
        text += u'\n' + qstring(outcome.advice);
    const bool isAddress = outcome.field == ConnectionOutcome::Field::address;
    showText(*addressStatus, isAddress ? text : QString(), !outcome.succeeded);
    showText(*status, isAddress ? QString() : text, !outcome.succeeded);
}

QString ConnectionForm::announcement(const ConnectionOutcome &outcome) {
    return (outcome.succeeded ? QStringLiteral("Connection test succeeded. ")
                              : QStringLiteral("Connection test failed. ")) +
        qstring(outcome.status);
}

void ConnectionForm::showProgress(const QString &text) const {
    showText(*status, text, false);
}

void ConnectionForm::setBusy(bool busy) const {
    address->setReadOnly(busy);
    token->setReadOnly(busy);
    progress->setVisible(busy);
}

void ConnectionForm::showSuggestion() const {
    const auto better = ConnectionCheck::suggestedAddress(address->text().toStdString());
    suggestion->setVisible(better.has_value());
    if (better)
        suggestion->setText(QStringLiteral("Use %1").arg(qstring(*better)));
}

void ConnectionForm::useSuggestion() const {
    const auto better = ConnectionCheck::suggestedAddress(address->text().toStdString());
    if (!better || address->isReadOnly())
        return;
    address->setText(qstring(*better));
    token->setFocus();
}

/// Return in the address field takes the offer instead of pressing the window's default button.
bool ConnectionForm::eventFilter(QObject *watched, QEvent *event) {
    if (watched == address && event->type() == QEvent::KeyPress && !suggestion->isHidden()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            useSuggestion();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void ConnectionForm::openTokenPage() const {
    if (const auto page = canvasLinks::tokenPage(address->text().trimmed().toStdString()))
        QDesktopServices::openUrl(QUrl(qstring(*page)));
    else
        showText(*addressStatus, qstring(tokenPageNeedsAddress), true);
}

} // namespace ellwynd
