// Writing preferences as the settings window does.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

#include <stdexcept>

namespace ellwynd {

/// A value that the setting's own control could not have produced. The message says what it takes.
class InvalidSetting : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// Saves a preference after the checks and with the limits of its control in the settings window.
/// Keys that no control has are saved as they are.
/// @throws InvalidSetting
void writeSetting(UserDefaults &defaults, const std::string &key, PreferenceValue value);

/// Announces the settings that views follow, whoever changes them: this window, another process, or
/// another machine.
class Settings : public QObject {
    Q_OBJECT

  public:
    explicit Settings(UserDefaults &defaults);

    [[nodiscard]] const UserDefaults &defaults() const { return store; }

    /// Within 0.8 to 2.0. A value equal to the current one changes and announces nothing.
    void setTextScale(double scale);

  Q_SIGNALS:
    void appearanceDidChange();
    void accentThemeDidChange();
    void textScaleDidChange();
    void termLimitDidChange();

  private:
    UserDefaults &store;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
