// The form for the Canvas address and the access token.
#pragma once

#include "canvas/connectioncheck.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <stop_token>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace ellwynd {

class TextLink;

/// The fields of a connection, their statuses and their checks. The view that owns the form adds
/// each widget to a layout, which takes ownership. Every task shows its outcome, unless another one
/// was started or the form was destroyed meanwhile.
class ConnectionForm : public QObject {
    Q_OBJECT

  public:
    /// @param check must outlive the form.
    ConnectionForm(ConnectionCheck &check, QObject *parent);
    ~ConnectionForm() override;

    /// Shows what is saved; reads the secret store.
    void reload();
    /// Tests the typed connection against Canvas. The fields are read-only meanwhile, so that what
    /// was tested is what is saved. Callers check whether they still exist before they go on.
    /// @throws Cancelled after `stopTest` and when the form is destroyed.
    QCoro::Task<ConnectionOutcome> test();
    /// Stops a running test; its outcome is not shown.
    void stopTest();
    /// Saves the typed connection, and then shows that a token is saved.
    QCoro::Task<ConnectionOutcome> save();
    /// Deletes the token, forgets the address and clears the fields.
    QCoro::Task<ConnectionOutcome> signOut();

    /// The outcome of a test, for screen readers.
    [[nodiscard]] static QString announcement(const ConnectionOutcome &outcome);

    /// What there is to say about the address; above its field, and hidden when empty.
    QLabel *const addressStatus;
    QLineEdit *const address;
    /// Offers the address that the typed text probably means; hidden when there is none. Return in
    /// the address field takes it.
    QPushButton *const suggestion;
    /// How a teacher gets a token.
    QLabel *const tokenSteps;
    /// Opens the Canvas page where access tokens are created.
    TextLink *const tokenPage;
    /// What there is to say about the token and the connection; above the token field.
    QLabel *const status;
    QLineEdit *const token;
    /// Shown during a test.
    QProgressBar *const progress;

  Q_SIGNALS:
    /// An address or a token was saved, or the teacher signed out. Emitted before anything is read
    /// from the new connection.
    void connectionDidChange();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    /// Starts a task whose outcome is shown unless another one is started.
    [[nodiscard]] int begin();
    QCoro::Task<> readState();
    void showState(const ConnectionState &state) const;
    void showOutcome(const ConnectionOutcome &outcome) const;
    void showProgress(const QString &text) const;
    void setBusy(bool busy) const;
    void showSuggestion() const;
    void useSuggestion() const;
    void openTokenPage() const;

    ConnectionCheck &check;
    /// Counts the tasks.
    int tasks = 0;
    /// Stops the current test.
    std::stop_source testStop;
};

} // namespace ellwynd
