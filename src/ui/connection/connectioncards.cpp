#include "ui/connection/connectioncards.h"

#include "net/task.h"
#include "ui/connection/connectionform.h"
#include "ui/support/appearance.h"
#include "ui/support/cardpage.h"
#include "uikit/convert.h"
#include "uikit/textlink.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace ellwynd {

ConnectionCards::ConnectionCards(
    ConnectionCheck &check, const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      form(new ConnectionForm(check, this)),
      connectButton(new QPushButton(QStringLiteral("Connect"))),
      sampleButton(new QPushButton(QStringLiteral("Explore the Sample College"))) {
    using namespace cardPage;
    connectButton->setProperty("primary", true);
    // Otherwise Return on this button would connect to Canvas.
    sampleButton->setAutoDefault(true);
    form->suggestion->setAutoDefault(true);
    auto *addressLabel = text(QStringLiteral("Canvas address"));
    addressLabel->setBuddy(form->address);
    auto *tokenLabel = text(QStringLiteral("Access token"));
    tokenLabel->setBuddy(form->token);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(card(
        QStringLiteral("Connect to Canvas"),
        {text(QStringLiteral(
             "Enter the address you use to sign in to Canvas, and an access token, which lets "
             "Ellwynd read Canvas as you without your password.")),
         form->addressStatus, addressLabel, form->address, leftAligned(form->suggestion),
         form->status, tokenLabel, form->token, form->tokenPage, form->tokenSteps, form->progress,
         leftAligned(connectButton)},
        appearance));
    column->addWidget(card(
        QStringLiteral("Look around first"),
        {text(QStringLiteral(
             "The sample college is invented: made-up courses and students, scored exactly as real "
             "ones are. It needs no account, and you can leave it whenever you like.")),
         leftAligned(sampleButton)},
        appearance));
    const auto size = [column, &appearance] { column->setSpacing(appearance.px(12)); };
    connect(&appearance, &Appearance::appearanceDidChange, this, size);
    size();
    connect(
        form, &ConnectionForm::connectionDidChange, this, &ConnectionCards::connectionDidChange);
    connect(connectButton, &QPushButton::clicked, this, [this] {
        detach(connectToCanvas(), "Connecting");
    });
    connect(sampleButton, &QPushButton::clicked, this, &ConnectionCards::sampleRequested);
    reload();
}

void ConnectionCards::reload() {
    form->reload();
}

void ConnectionCards::focusFields() {
    if (form->address->text().isEmpty() || !form->token->isEnabled())
        form->address->setFocus();
    else
        form->token->setFocus();
}

/// Return connects, unless it means something to the focused control.
void ConnectionCards::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        connectButton->click();
    else
        QWidget::keyPressEvent(event);
}

void ConnectionCards::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    // Minimising the window does not stop the test.
    if (event->spontaneous())
        return;
    form->stopTest();
    setChecking(false);
}

void ConnectionCards::setChecking(bool checking) {
    connectButton->setEnabled(!checking);
    sampleButton->setEnabled(!checking);
    Q_EMIT checkingDidChange(checking);
}

QCoro::Task<> ConnectionCards::connectToCanvas() {
    const QPointer<ConnectionCards> self(this);
    const QPointer<QWidget> focused(window()->focusWidget());
    setChecking(true);
    auto testing = form->test();
    const ConnectionOutcome tested = co_await testing;
    if (!self)
        co_return;
    ConnectionOutcome outcome = tested;
    if (tested.succeeded) {
        auto saving = form->save();
        outcome = co_await saving;
        // What is being saved cannot be stopped; only the result is not shown any more.
        if (!self)
            co_return;
    }
    setChecking(false);
    if (outcome.succeeded)
        Q_EMIT connectionDidSucceed(qstring(tested.status));
    else if (focused)
        focused->setFocus();
    Q_EMIT announcementRequested(
        ConnectionForm::announcement(outcome.succeeded ? tested : outcome));
}

} // namespace ellwynd
