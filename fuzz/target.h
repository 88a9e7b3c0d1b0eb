// The interface of a fuzz target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Passes bytes to a parser of untrusted input. A crash or an abort is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace ellwynd::fuzz {

inline std::string_view text(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

/// Aborts unless a condition holds.
inline void require(bool condition) {
    if (!condition)
        __builtin_trap();
}

} // namespace ellwynd::fuzz
