// UTF-8 texts as QStrings for widgets.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace ellwynd {

[[nodiscard]] inline QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

/// A text for a menu or a button, with "&" escaped so that it is not a mnemonic.
[[nodiscard]] inline QString menuText(std::string_view text) {
    return qstring(text).replace(u'&', QStringLiteral("&&"));
}

/// A file name for a save panel. Quotation marks are replaced, since Qt's panel treats them as
/// separators of several names.
[[nodiscard]] inline QString panelFileName(std::string_view name) {
    return qstring(name).replace(u'"', u'\'');
}

} // namespace ellwynd
