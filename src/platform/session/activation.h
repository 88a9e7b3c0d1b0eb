// The activation token, by which a desktop lets a program come to the front.
#pragma once

#include <QString>

namespace ellwynd {

/// The token that the desktop gave to this process when it started it; may be empty. Call it before
/// the application object is made, which takes the token away for its first window.
[[nodiscard]] QString activationTokenOfStart();

/// Keeps a token for the next window of this process that asks to come to the front.
void setActivationToken(const QString &token);

} // namespace ellwynd
