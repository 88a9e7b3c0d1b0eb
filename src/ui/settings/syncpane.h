// Settings ▸ Sync.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace ellwynd {

class SyncService;

/// Whether settings are synced, and through which folder.
class SyncPane : public SettingsPane {
    Q_OBJECT

  public:
    SyncPane(UserDefaults &defaults, SyncService &service, const Appearance &appearance);

  protected:
    void showPreferences() override;

  private:
    void chooseFolder();
    void confirmRemoval();

    SyncService &service;
    QCheckBox *enabled;
    QLineEdit *folder;
    QPushButton *choose;
    QPushButton *remove;
    QLabel *status;
};

} // namespace ellwynd
