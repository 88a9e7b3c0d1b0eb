// The style sheet of standard widgets.
#pragma once

#include <QString>

namespace ellwynd {

class Appearance;

/// The application's style sheet for the current appearance.
[[nodiscard]] QString styleSheet(const Appearance &appearance);

} // namespace ellwynd
