#include "cli/terminaltext.h"

#include "base/text.h"

#include <QString>

namespace ellwynd::cli {

namespace {

constexpr QChar leftToRightMark(0x200e);

/// Embeddings, overrides and isolates. Marks, which occur in names, affect only their neighbours.
bool changesDirection(char32_t c) {
    switch (QChar::direction(c)) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

bool isRightToLeft(char32_t c) {
    const QChar::Direction direction = QChar::direction(c);
    return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
}

bool breaksLine(char32_t c) {
    return c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

} // namespace

std::string terminalText(std::string_view text) {
    const std::string line = oneLine(text);
    QString shown;
    bool isMixed = false;
    for (const char32_t c :
         QString::fromUtf8(line.data(), qsizetype(line.size())).toStdU32String()) {
        isMixed = isMixed || isRightToLeft(c);
        if (breaksLine(c))
            shown += u' ';
        else if (!changesDirection(c))
            shown += QString::fromUcs4(&c, 1);
    }
    if (isMixed)
        shown += leftToRightMark;
    return shown.toStdString();
}

std::string fitted(std::string text, std::size_t columns) {
    if (displayWidth(text) <= columns)
        return text;
    do {
        // The last character, with the continuation bytes of its UTF-8.
        while (text.size() > 1 && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U)
            text.pop_back();
        text.pop_back();
    } while (!text.empty() && displayWidth(text) + 1 > columns);
    return text + "…";
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines(1);
    while (true) {
        const std::size_t blank = text.find(' ');
        const std::string word(text.substr(0, blank));
        std::string &line = lines.back();
        if (line.empty())
            line = word;
        else if (displayWidth(line) + 1 + displayWidth(word) <= columns)
            line += ' ' + word;
        else
            lines.push_back(word);
        if (blank == std::string_view::npos)
            return lines;
        text.remove_prefix(blank + 1);
    }
}

} // namespace ellwynd::cli
