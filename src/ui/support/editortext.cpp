#include "ui/support/editortext.h"

#include <QPlainTextEdit>

namespace ellwynd {

QString rawText(const QPlainTextEdit &editor) {
    // The raw text has Unicode separators for lines and paragraphs.
    QString text = editor.document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace ellwynd
