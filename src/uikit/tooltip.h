// Tooltips that are safe for untrusted text.
#pragma once

#include <QString>

namespace ellwynd {

/// A text as a tooltip. Escaped, since Qt shows tooltips that look like markup as markup, and
/// wrapped in markup, since Qt breaks the lines only of those.
[[nodiscard]] inline QString plainToolTip(const QString &text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

} // namespace ellwynd
