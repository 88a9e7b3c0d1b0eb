#include "platform/session/activation.h"

namespace ellwynd {

namespace {

constexpr const char *xdgVariable = "XDG_ACTIVATION_TOKEN";
/// What X11 desktops set instead.
constexpr const char *startupVariable = "DESKTOP_STARTUP_ID";

} // namespace

QString activationTokenOfStart() {
    const QString token = qEnvironmentVariable(xdgVariable);
    return token.isEmpty() ? qEnvironmentVariable(startupVariable) : token;
}

// The window system's plugin reads and removes the variable.
void setActivationToken(const QString &token) {
    qputenv(xdgVariable, token.toUtf8());
}

} // namespace ellwynd
