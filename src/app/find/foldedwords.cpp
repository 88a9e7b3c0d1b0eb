#include "app/find/foldedwords.h"

#include "app/find/comparabletext.h"

#include <QList>

#include <utility>

namespace ellwynd {

namespace {

/// Whether a character is a part of a word. What stands for a wrong byte is not.
bool isInWord(char32_t code) {
    if (code == QChar::ReplacementCharacter)
        return false;
    return QChar::isLetterOrNumber(code) || QChar::isMark(code) ||
        QChar::category(code) == QChar::Symbol_Other;
}

/// Whether words of this script are written without blanks, or are one syllable each.
bool beginsAnywhere(char32_t code) {
    switch (QChar::script(code)) {
    case QChar::Script_Han:
    case QChar::Script_Hangul:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return true;
    default:
        return false;
    }
}

/// Collects the words of one text.
class Collector {
  public:
    void add(char32_t code, std::size_t begin, std::size_t end) {
        // Characters without a width, such as marks of direction, do not separate words.
        if (QChar::category(code) == QChar::Other_Format)
            return;
        if (isApostrophe(code) && !word.text.isEmpty()) {
            afterApostrophe = true;
            return;
        }
        if (!isInWord(code))
            return finish();
        const QString text = comparableCharacter(code);
        if (text.isEmpty()) {
            if (!word.ends.empty())
                word.ends.back() = end;
            return;
        }
        if (word.text.isEmpty())
            word.begin = begin;
        else if (std::exchange(afterApostrophe, false) || beginsAnywhere(code))
            later.emplace_back(word.text.size(), begin);
        word.text += text;
        word.ends.insert(word.ends.end(), std::size_t(text.size()), end);
    }

    void finish() {
        afterApostrophe = false;
        if (word.text.isEmpty())
            return;
        const std::size_t whole = words.size();
        words.push_back(std::exchange(word, {}));
        for (const auto &[at, begin] : std::exchange(later, {})) {
            const FoldedWord &from = words[whole];
            FoldedWord rest{
                .text = from.text.mid(at),
                .begin = begin,
                .ends = {from.ends.begin() + std::ptrdiff_t(at), from.ends.end()},
                .isWhole = false};
            words.push_back(std::move(rest));
        }
    }

    std::vector<FoldedWord> words;

  private:
    FoldedWord word;
    /// The later beginnings of the word: the place in its folded text and that in the name.
    std::vector<std::pair<qsizetype, std::size_t>> later;
    bool afterApostrophe = false;
};

} // namespace

std::vector<FoldedWord> foldedWords(std::string_view text) {
    Collector collector;
    std::size_t at = 0;
    for (const char32_t code : QString::fromUtf8(text.data(), qsizetype(text.size())).toUcs4()) {
        const std::size_t end = at + (QChar::requiresSurrogates(code) ? 2 : 1);
        collector.add(code, at, end);
        at = end;
    }
    collector.finish();
    return std::move(collector.words);
}

} // namespace ellwynd
