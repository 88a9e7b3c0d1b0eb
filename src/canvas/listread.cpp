#include "canvas/listread.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

std::string_view explanation(CutShort reason) {
    switch (reason) {
    case CutShort::pageLimit:
        return "it has more pages than Ellwynd reads";
    case CutShort::refusedLink:
        return "Canvas linked its next page to another address, where your token is not sent";
    case CutShort::unreadableLink:
        return "Canvas linked its next page to an address that could not be read";
    }
    return {};
}

} // namespace

std::string cutShortText(std::string_view records, CutShort reason) {
    return fmt::format("The list of {} is incomplete: {}.", records, explanation(reason));
}

} // namespace ellwynd
