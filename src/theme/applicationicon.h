// The icon of the program's windows.
#pragma once

#include <QIcon>

namespace ellwynd {

/// Rendered from the compiled-in SVG at the sizes that desktops use, so that windows have an icon
/// even if the program is not installed. Needs a QGuiApplication.
[[nodiscard]] QIcon applicationIcon();

} // namespace ellwynd
