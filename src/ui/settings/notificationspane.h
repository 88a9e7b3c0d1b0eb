// Settings ▸ Notifications.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;

namespace ellwynd {

class UserNotifications;

/// Whether and when the teacher is notified of students who newly do worse. Each time the pane
/// comes into view, it asks the system whether notices are allowed.
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
    void queryAuthorization();

    UserNotifications &notifications;
    QCheckBox *enabled;
    QCheckBox *whileActive;
    QLabel *turnedOff;
};

} // namespace ellwynd
