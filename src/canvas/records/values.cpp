#include "canvas/records/values.h"

#include <cmath>

namespace ellwynd::decoding {

namespace dom = simdjson::dom;

void fail(std::string_view key, std::string problem) {
    throw Fault{std::string(key), std::move(problem)};
}

void decodeValue(const dom::element &value, std::int64_t &into) {
    if (value.get(into) == simdjson::SUCCESS)
        return;
    // An integer may be written as a real, such as 5.0.
    double real = 0;
    constexpr double exact = 9007199254740992.0; // 2^53
    if (!value.is<double>() || value.get(real) != simdjson::SUCCESS || real != std::trunc(real) ||
        std::abs(real) >= exact)
        fail("", "is not a 64-bit integer");
    into = std::int64_t(real);
}

void decodeValue(const dom::element &value, double &into) {
    if (value.get(into) != simdjson::SUCCESS || !std::isfinite(into))
        fail("", "is not a number");
}

void decodeValue(const dom::element &value, bool &into) {
    if (value.get(into) != simdjson::SUCCESS)
        fail("", "is not a boolean");
}

void decodeValue(const dom::element &value, std::string &into) {
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail("", "is not a string");
    into = text;
}

void decodeValue(const dom::element &value, Date &into) {
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail("", "is not a date");
    const auto date = parseInstant(text);
    if (!date)
        fail("", "is not an ISO 8601 date with a time and an offset");
    into = *date;
}

void decodeValue(const dom::element &value, WorkflowState &into) {
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail("", "is not a string");
    into = text;
}

} // namespace ellwynd::decoding
