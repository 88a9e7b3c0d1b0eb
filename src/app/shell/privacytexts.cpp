#include "app/shell/privacytexts.h"

#include <fmt/format.h>

#include <cctype>

namespace ellwynd {

std::string recordedLine(std::string_view status, std::string_view contents) {
    if (contents.empty())
        return std::string(status);
    std::string sentence(contents);
    // toupper leaves digits unchanged.
    sentence.front() = char(std::toupper(static_cast<unsigned char>(sentence.front())));
    return fmt::format("{} {}.", status, sentence);
}

std::string
deleteButtonName(std::string_view label, std::string_view status, std::string_view contents) {
    return contents.empty() ? fmt::format("{}: {}", label, status)
                            : fmt::format("{}: {}. {}", label, contents, status);
}

} // namespace ellwynd
