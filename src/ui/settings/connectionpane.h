// Settings ▸ Connection.
#pragma once

#include "ui/settings/settingspane.h"

#include <QCoro/QCoroTask>

class QPushButton;

namespace ellwynd {

class ConnectionCheck;
class ConnectionForm;

/// Tests, saves or deletes the Canvas address and its token.
class ConnectionPane : public SettingsPane {
    Q_OBJECT

  public:
    ConnectionPane(UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance);

    /// Shows what is saved; reads the secret store.
    void reload();

  Q_SIGNALS:
    void connectionDidChange();
    /// Screen readers should announce this text.
    void announcementRequested(const QString &text);

  protected:
    void showPreferences() override;

  private:
    QCoro::Task<> test();
    QCoro::Task<> save();
    void confirmSignOut();
    QCoro::Task<> signOut();
    void setBusy(bool busy);

    ConnectionCheck &check;
    ConnectionForm *form;
    QPushButton *testButton;
    QPushButton *saveButton;
    QPushButton *signOutButton;
    /// The address that the form shows as saved.
    std::string shownAddress;
    bool busy = false;
};

} // namespace ellwynd
