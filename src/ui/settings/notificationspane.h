// Settings ▸ Notifications.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;

namespace ellwynd {

class UserNotifications;

/// Whether and when the teacher is notified of students who newly do worse. Asks the system whether
/// it shows notices each time the pane comes into view.
class NotificationsPane : public SettingsPane {
    Q_OBJECT

  public:
    NotificationsPane(
        UserDefaults &defaults, UserNotifications &notifications, const Appearance &appearance);

  protected:
    void showPreferences() override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    void askSystem();

    UserNotifications &notifications;
    QCheckBox *enabled;
    QCheckBox *whileActive;
    QLabel *turnedOff;
};

} // namespace ellwynd
