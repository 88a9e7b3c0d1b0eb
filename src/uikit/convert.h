// The program's UTF-8 texts in widgets, and back.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace ellwynd {

[[nodiscard]] inline QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

/// A text for a menu or a button, where "&" would mark a key.
[[nodiscard]] inline QString menuText(std::string_view text) {
    return qstring(text).replace(u'&', QStringLiteral("&&"));
}

/// A file's name as a save panel takes it: Qt's own panel reads '"' as the end of one name of
/// several.
[[nodiscard]] inline QString panelFileName(std::string_view name) {
    return qstring(name).replace(u'"', u'\'');
}

} // namespace ellwynd
