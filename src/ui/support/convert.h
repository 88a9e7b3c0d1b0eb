// The program's UTF-8 texts in widgets, and back.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace ellwynd {

[[nodiscard]] inline QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace ellwynd
