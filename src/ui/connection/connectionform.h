// The form for the Canvas address and the access token.
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

/// The fields of a connection, its status and its checks. The view that owns the form adds each
/// widget to a layout, which takes ownership.
class ConnectionForm : public QObject {
    Q_OBJECT

  public:
    /// @param check must outlive the form.
    ConnectionForm(ConnectionCheck &check, QObject *parent);
    ~ConnectionForm() override;

    /// Shows what is saved; reads the secret store.
    void reload();
    /// Tests the typed connection against Canvas and shows the outcome. The fields are read-only
    /// meanwhile, so that what was tested is what is saved. The form may be destroyed while this
    /// runs; callers check before using it again.
    /// @throws Cancelled after `stopTest` and when the form is destroyed.
    QCoro::Task<ConnectionOutcome> test();
    /// Stops a running test; its outcome is not shown.
    void stopTest();
    /// Saves the typed connection and shows the outcome.
    ConnectionOutcome save();
    void showOutcome(const ConnectionOutcome &outcome) const;

    /// The outcome of a test, for screen readers.
    [[nodiscard]] static QString announcement(const ConnectionOutcome &outcome);

    QLineEdit *const address;
    QLineEdit *const token;
    /// Opens the Canvas page where access tokens are created.
    TextLink *const tokenPage;
    QLabel *const status;
    /// Shown during a test.
    QProgressBar *const progress;

  private:
    void setTesting(bool testing) const;
    void openTokenPage() const;

    ConnectionCheck &check;
    /// Stops the current test.
    std::stop_source testStop;
};

} // namespace ellwynd
