#include "widgets/levelcolors.h"

namespace ellwynd {

const LevelColors &levelColors(const Theme &theme, WidgetLevel level) {
    switch (level) {
    case WidgetLevel::atRisk:
        return theme.atRisk;
    case WidgetLevel::concern:
        return theme.concern;
    case WidgetLevel::watch:
        break;
    }
    return theme.watch;
}

} // namespace ellwynd
