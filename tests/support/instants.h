// Instants in tests.
#pragma once

#include "base/date.h"

#include <stdexcept>

namespace ellwynd::test {

/// Parses an ISO 8601 instant; an invalid text fails the test.
inline Date at(std::string_view text) {
    const auto date = parseInstant(text);
    if (!date)
        throw std::invalid_argument("not an instant: " + std::string(text));
    return *date;
}

/// A Thursday, the "now" of most tests.
inline const Date noon = at("2026-09-24T12:00:00Z");

/// A clock that always returns `noon`.
inline Date noonClock() {
    return noon;
}

} // namespace ellwynd::test
