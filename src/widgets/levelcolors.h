// The colours of a widget's levels.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "theme/theme.h"

namespace ellwynd {

[[nodiscard]] const LevelColors &levelColors(const Theme &theme, WidgetLevel level);

} // namespace ellwynd
