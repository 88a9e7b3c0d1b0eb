// Tooltips that show texts from anywhere as they are.
#pragma once

#include <QString>

namespace ellwynd {

/// A text as a tooltip. Qt shows a tooltip that looks like markup as markup unless it is escaped,
/// and wraps only those that are markup.
[[nodiscard]] inline QString plainToolTip(const QString &text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

} // namespace ellwynd
