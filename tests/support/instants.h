// Instants in tests.
#pragma once

#include "base/date.h"

#include <stdexcept>

namespace ellwynd::test {

/// An instant by its text; a text that is none fails the test.
inline Date at(std::string_view text) {
    const auto date = parseInstant(text);
    if (!date)
        throw std::invalid_argument("no instant: " + std::string(text));
    return *date;
}

/// A Thursday morning, the "now" of most tests.
inline const Date noon = at("2026-09-24T12:00:00Z");

/// The clock that says so.
inline Date noonClock() {
    return noon;
}

} // namespace ellwynd::test
