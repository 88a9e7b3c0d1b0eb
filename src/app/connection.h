// Which data source the preferences name.
#pragma once

#include "canvas/canvasreading.h"
#include "platform/userdefaults.h"

#include <memory>

namespace ellwynd {

/// The invented college in sample mode; nothing when the program is not connected.
[[nodiscard]] std::shared_ptr<CanvasReading> openConnection(const UserDefaults &defaults);

} // namespace ellwynd
