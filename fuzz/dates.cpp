// ISO 8601 instants.
#include "base/date.h"
#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const auto date = parseInstant(fuzz::text(data, size));
    if (!date)
        return 0;
    // An instant round-trips to the second.
    const auto reread = parseInstant(formatInstant(*date));
    const bool fourDigitYear = formatInstant(*date).size() == 20;
    fuzz::require(
        !fourDigitYear || (reread && *reread == std::chrono::floor<std::chrono::seconds>(*date)));
    return 0;
}
