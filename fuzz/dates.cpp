// ISO 8601 instants.
#include "base/date.h"
#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const auto date = parseInstant(fuzz::text(data, size));
    if (!date)
        return 0;
    // What was read can be written and read back, to the second.
    const auto again = parseInstant(formatInstant(*date));
    const bool fourDigitYear = formatInstant(*date).size() == 20;
    fuzz::require(
        !fourDigitYear || (again && *again == std::chrono::floor<std::chrono::seconds>(*date)));
    return 0;
}
