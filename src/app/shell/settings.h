// Writes validated preferences, and announces their changes to views.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

namespace ellwynd {

/// Saves a preference that a user entered, converted to its type and checked against its limits. A
/// key that is not in the table of preferences is saved unchecked.
/// @throws InvalidPreference
void writeSetting(UserDefaults &defaults, const std::string &key, PreferenceValue value);

/// Announces changes of the settings that views follow, whether made by this window, another
/// process or another machine.
class Settings : public QObject {
    Q_OBJECT

  public:
    /// @param store must outlive this object.
    explicit Settings(UserDefaults &store);

    [[nodiscard]] const UserDefaults &defaults() const { return store; }

    /// Clamps `scale` to 0.8…2.0. Does nothing if it equals the current value.
    void setTextScale(double scale);

  Q_SIGNALS:
    void appearanceDidChange();
    void accentThemeDidChange();
    void textScaleDidChange();
    void termLimitDidChange();

  private:
    void announce(Preference::ChangeSignal change);

    UserDefaults &store;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
