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
    /// In the sample college the pane only offers to leave it: neither the saved connection nor the
    /// secret store is touched.
    ConnectionPane(UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance);

    /// Shows what is saved; reads the secret store, except in the sample college.
    void reload();

  Q_SIGNALS:
    void connectionDidChange();
    /// The teacher wants to leave the sample college.
    void leaveSampleRequested();
    /// Screen readers should announce this text.
    void announcementRequested(const QString &text);

  protected:
    void showPreferences() override;

  private:
    void makeForm();
    void makeSampleNote();
    QCoro::Task<> test();
    QCoro::Task<> save();
    void confirmSignOut();
    QCoro::Task<> signOut();
    void setBusy(bool busy);

    ConnectionCheck &check;
    /// Null in the sample college, as are the buttons.
    ConnectionForm *form = nullptr;
    QPushButton *testButton = nullptr;
    QPushButton *saveButton = nullptr;
    QPushButton *signOutButton = nullptr;
    /// The address that the form shows as saved.
    std::string shownAddress;
    bool busy = false;
};

} // namespace ellwynd
