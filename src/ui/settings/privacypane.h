// Settings ▸ Privacy.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;
class QPushButton;

namespace ellwynd {

struct Stores;

/// Switches for what is remembered of students between visits, and buttons that delete it.
class PrivacyPane : public SettingsPane {
    Q_OBJECT

  public:
    PrivacyPane(UserDefaults &defaults, Stores &stores, const Appearance &appearance);

  protected:
    void showPreferences() override;

  private:
    Stores &stores;
    QCheckBox *rememberHistory;
    QLabel *historyLine;
    QPushButton *deleteHistory;
    QCheckBox *rememberContacts;
    QLabel *contactsLine;
    QPushButton *deleteContacts;
};

} // namespace ellwynd
