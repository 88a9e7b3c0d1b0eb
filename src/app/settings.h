// Writing preferences as the settings window does.
#pragma once

#include "platform/userdefaults.h"

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

} // namespace ellwynd
