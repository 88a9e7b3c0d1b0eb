// The XDG activation token, with which a desktop permits a program to raise a window.
#pragma once

#include <QString>

namespace ellwynd {

/// The token with which the desktop started this process; may be empty. Must be called before the
/// application object is created, which consumes the token for its first window.
[[nodiscard]] QString activationTokenOfStart();

/// Sets the token for the next window that this process raises.
void setActivationToken(const QString &token);

} // namespace ellwynd
