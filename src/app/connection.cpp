#include "app/connection.h"

#include "canvas/sample/samplecanvasclient.h"

namespace ellwynd {

std::shared_ptr<CanvasReading> openConnection(const UserDefaults &defaults) {
    if (defaults.value(preferences::sampleData))
        return std::make_shared<SampleCanvasClient>();
    return nullptr;
}

} // namespace ellwynd
