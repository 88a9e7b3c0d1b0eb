// The program's own icon, as the desktop shows it.
#pragma once

#include <QIcon>

namespace ellwynd {

/// Drawn from the compiled-in picture at every size that desktops ask for, so that windows have it
/// where the program is not installed. Needs a QGuiApplication.
[[nodiscard]] QIcon applicationIcon();

} // namespace ellwynd
