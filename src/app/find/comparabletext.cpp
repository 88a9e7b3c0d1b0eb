#include "app/find/comparabletext.h"

#include <QList>

#include <algorithm>
#include <utility>

namespace ellwynd {

namespace {

/// Letters that Unicode does not decompose.
constexpr std::pair<char32_t, const char *> plainForms[] = {
    {U'ø', "o"},  {U'Ø', "o"},  {U'ł', "l"},  {U'Ł', "l"}, {U'đ', "d"},  {U'Đ', "d"}, {U'æ', "ae"},
    {U'Æ', "ae"}, {U'œ', "oe"}, {U'Œ', "oe"}, {U'ı', "i"}, {U'ß', "ss"}, {U'ẞ', "ss"}};

constexpr char32_t firstBeyondAscii = 0x80;

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

/// Most characters are ASCII, for which no text of their own is made.
void append(char32_t code, QString &result) {
    if (code >= firstBeyondAscii)
        result += comparableCharacter(code);
    else if (!isApostrophe(code))
        result += QChar(char16_t(code)).toLower();
}

} // namespace

bool isApostrophe(char32_t code) {
    return code == U'\'' || code == U'’' || code == U'ʼ';
}

QString comparableCharacter(char32_t code) {
    if (isApostrophe(code) || QChar::category(code) == QChar::Other_Format)
        return {};
    if (code < firstBeyondAscii)
        return QString(QChar(char16_t(code)).toLower());
    for (const auto &[letter, plain] : plainForms) {
        if (letter == code)
            return QString::fromLatin1(plain);
    }
    QString result;
    const QString parts = QString::fromUcs4(&code, 1).normalized(QString::NormalizationForm_KD);
    for (const char32_t part : parts.toUcs4()) {
        // The vowel signs of Indic scripts are marks too, but without a combining class.
        if (!QChar::isMark(part) || QChar::combiningClass(part) == 0)
            result += QString::fromUcs4(&part, 1);
    }
    return result.toCaseFolded();
}

ComparableText comparableText(std::string_view text) {
    ComparableText result;
    std::size_t end = 0;
    for (const char32_t code : fromUtf8(text).toUcs4()) {
        const std::size_t begin = end;
        end += QChar::requiresSurrogates(code) ? 2 : 1;
        append(code, result.text);
        const std::size_t added = std::size_t(result.text.size()) - result.ends.size();
        // An accent that follows its letter belongs to it.
        if (added == 0 && !result.ends.empty() && QChar::isMark(code))
            result.ends.back() = end;
        result.begins.insert(result.begins.end(), added, begin);
        result.ends.insert(result.ends.end(), added, end);
    }
    return result;
}

void appendComparable(std::string_view text, std::string &to) {
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < firstBeyondAscii; };
    if (std::ranges::all_of(text, isAscii)) {
        for (const char c : text) {
            if (!isApostrophe(char32_t(c)))
                to += c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
        }
        return;
    }
    QString result;
    for (const char32_t code : fromUtf8(text).toUcs4())
        append(code, result);
    to += result.toStdString();
}

std::string comparable(std::string_view text) {
    std::string result;
    appendComparable(text, result);
    return result;
}

} // namespace ellwynd
