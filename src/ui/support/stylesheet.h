// The style of standard widgets.
#pragma once

#include <QString>

namespace ellwynd {

class Appearance;

/// The application's style sheet for the appearance as it is now.
[[nodiscard]] QString styleSheet(const Appearance &appearance);

} // namespace ellwynd
