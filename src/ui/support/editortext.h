// The text of an editor.
#pragma once

#include <QString>

class QPlainTextEdit;

namespace ellwynd {

/// The text as it was typed, with lines separated by "\n". `QPlainTextEdit::toPlainText` would
/// replace no-break spaces with spaces.
[[nodiscard]] QString rawText(const QPlainTextEdit &editor);

} // namespace ellwynd
