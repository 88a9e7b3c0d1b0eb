// Settings ▸ Privacy.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;
class QPushButton;

namespace ellwynd {

class UndoStack;
struct Stores;

/// Switches for what is remembered of students between visits, and buttons that delete it. Deleting
/// can be undone.
class PrivacyPane : public SettingsPane {
    Q_OBJECT

  public:
    /// The stores and the stack must outlive the pane.
    PrivacyPane(
        UserDefaults &defaults, Stores &stores, UndoStack &undo, const Appearance &appearance);

  protected:
    void showPreferences() override;
    void showEvent(QShowEvent *event) override;

  private:
    void showStores();

    Stores &stores;
    QCheckBox *rememberHistory;
    QLabel *historyLine;
    QPushButton *deleteHistory;
    QCheckBox *rememberContacts;
    QLabel *contactsLine;
    QPushButton *deleteContacts;
};

} // namespace ellwynd
