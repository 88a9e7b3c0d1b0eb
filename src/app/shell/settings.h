// Writing preferences as the settings window does.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

namespace ellwynd {

/// Saves a preference that somebody enters, as its type and within the limits of its control. A key
/// that the table of preferences does not describe is saved as it is.
/// @throws InvalidPreference
void writeSetting(UserDefaults &defaults, const std::string &key, PreferenceValue value);

/// Announces the settings that views follow, whoever changes them: this window, another process, or
/// another machine.
class Settings : public QObject {
    Q_OBJECT

  public:
    /// @param store must outlive this object.
    explicit Settings(UserDefaults &store);

    [[nodiscard]] const UserDefaults &defaults() const { return store; }

    /// Within 0.8 to 2.0. A value equal to the current one changes and announces nothing.
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
