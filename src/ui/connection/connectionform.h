// Where the teacher enters the Canvas address and the access token.
#pragma once

#include "canvas/connectioncheck.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <stop_token>

class QLabel;
class QLineEdit;
class QProgressBar;

namespace ellwynd {

class TextLink;

/// The fields of a connection and what is known of it, with the checks behind them. The view that
/// owns the form puts every part into a layout of its own, which takes it over.
class ConnectionForm : public QObject {
    Q_OBJECT

  public:
    /// @param check must outlive the form.
    ConnectionForm(ConnectionCheck &check, QObject *parent);
    ~ConnectionForm() override;

    /// Shows what is saved; asks the secret store.
    void reload();
    /// Asks Canvas with what is typed and shows how that ended. Until then the fields cannot be
    /// changed: what is being checked is what will be saved. Whoever awaits it looks whether the
    /// form is still there before going on.
    /// @throws Cancelled after `stopTest` and once the form is gone.
    QCoro::Task<ConnectionOutcome> test();
    /// Ends a test under way, whose outcome is then not shown.
    void stopTest();
    /// Saves what is typed and shows how that ended.
    ConnectionOutcome save();
    void showOutcome(const ConnectionOutcome &outcome);

    /// How a test ended, for screen readers.
    [[nodiscard]] static QString announcement(const ConnectionOutcome &outcome);

    QLineEdit *const address;
    QLineEdit *const token;
    /// Opens the page of Canvas where access tokens are created.
    TextLink *const tokenPage;
    QLabel *const status;
    /// Shown during a test.
    QProgressBar *const progress;

  private:
    void setTesting(bool testing);
    void openTokenPage();

    ConnectionCheck &check;
    /// Of the test under way.
    std::stop_source testStop;
};

} // namespace ellwynd
