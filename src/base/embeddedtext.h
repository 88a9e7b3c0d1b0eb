// Texts that are compiled into the program, so that it needs no files beside it.
#pragma once

#include <span>
#include <string_view>

namespace ellwynd {

struct EmbeddedText {
    /// The file's name without its extension.
    std::string_view name;
    std::string_view text;
};

} // namespace ellwynd
