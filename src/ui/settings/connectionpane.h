// Settings ▸ Connection.
#pragma once

#include "ui/settings/settingspane.h"

#include <QCoro/QCoroTask>

class QLineEdit;
class QProgressBar;
class QPushButton;

namespace ellwynd {

class ConnectionCheck;

/// The Canvas address and its token: tested, saved, or forgotten.
class ConnectionPane : public SettingsPane {
    Q_OBJECT

  public:
    ConnectionPane(UserDefaults &defaults, ConnectionCheck &check, const Appearance &appearance);

    /// Shows what is saved; asks the secret store.
    void reload();

  Q_SIGNALS:
    void connectionDidChange();
    /// What a screen reader should say now.
    void announced(const QString &text);

  protected:
    void showPreferences() override {}

  private:
    QCoro::Task<> test();
    void save();
    void signOut();
    void openTokenPage();
    void say(const std::string &text, bool failed = false);

    ConnectionCheck &check;
    QLineEdit *address;
    QLineEdit *token;
    QLabel *status;
    QProgressBar *progress;
    QPushButton *testButton;
};

} // namespace ellwynd
