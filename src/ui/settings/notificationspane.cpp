#include "ui/settings/notificationspane.h"

#include "platform/notifications/usernotifications.h"
#include "ui/support/appearance.h"
#include "uikit/labels.h"

#include <QCheckBox>
#include <QEvent>
#include <QPointer>
#include <QSignalBlocker>

namespace ellwynd {

NotificationsPane::NotificationsPane(
    UserDefaults &defaults, UserNotifications &notifications, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Notifications"), defaults, appearance),
      notifications(notifications),
      enabled(new QCheckBox(QStringLiteral("Notify me when students newly need attention"))),
      whileActive(new QCheckBox(QStringLiteral("Also while Ellwynd is in front"))),
      turnedOff(plainLabel(nullptr, true)) {
    addNote(
        QStringLiteral("A notice shows how many students in which courses, never a student’s name. "
                       "Each student is "
                       "mentioned only once until you open their course. Notices make no sound."));
    addWidget(enabled);
    addWidget(whileActive);
    turnedOff->setProperty("attention", true);
    turnedOff->setText(
        QStringLiteral("macOS has notifications turned off for Ellwynd. Enable them in System "
                       "Settings ▸ Notifications."));
    addWidget(turnedOff);
    turnedOff->hide();

    connect(enabled, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::movementNotifications, on);
    });
    connect(whileActive, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::notifyWhileActive, on);
    });
    NotificationsPane::showPreferences();
}

void NotificationsPane::showPreferences() {
    const QSignalBlocker quiet[] = {QSignalBlocker(enabled), QSignalBlocker(whileActive)};
    enabled->setChecked(defaults.value(preferences::movementNotifications));
    whileActive->setChecked(defaults.value(preferences::notifyWhileActive));
    whileActive->setEnabled(enabled->isChecked());
}

void NotificationsPane::queryAuthorization() {
    notifications.authorizationStatus([self = QPointer(this)](
                                          UserNotifications::AuthorizationStatus status) {
        if (self)
            self->turnedOff->setVisible(status == UserNotifications::AuthorizationStatus::denied);
    });
}

void NotificationsPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    queryAuthorization();
}

void NotificationsPane::changeEvent(QEvent *event) {
    SettingsPane::changeEvent(event);
    // The teacher may have changed the system's settings meanwhile.
    if (event->type() == QEvent::ActivationChange && isVisible() && isActiveWindow())
        queryAuthorization();
}

} // namespace ellwynd
