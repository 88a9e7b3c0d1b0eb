// What a fuzz target is: a function that any bytes may be thrown at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Feeds bytes to one reader of what comes from outside; a finding is a crash or an abort.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace ellwynd::fuzz {

inline std::string_view text(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

/// Ends the run where something that must hold does not.
inline void require(bool holds) {
    if (!holds)
        __builtin_trap();
}

} // namespace ellwynd::fuzz
