// Settings ▸ Connection.
#pragma once

#include "ui/settings/settingspane.h"

#include <QCoro/QCoroTask>

class QPushButton;

namespace ellwynd {

class ConnectionCheck;
class ConnectionForm;

/// The Canvas address and its token: tested, saved, or forgotten.
class ConnectionPane : public SettingsPane {
    Q_OBJECT

  public:
    ConnectionPane(UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance);

    /// Shows what is saved; asks the secret store.
    void reload();

  Q_SIGNALS:
    void connectionDidChange();
    /// A screen reader should say this now.
    void announcementRequested(const QString &text);

  protected:
    void showPreferences() override {}

  private:
    QCoro::Task<> test();
    /// Stops a test under way; its result is not shown.
    void stopTest();
    void save();
    void signOut();

    ConnectionCheck &check;
    ConnectionForm *form;
    QPushButton *testButton;
};

} // namespace ellwynd
