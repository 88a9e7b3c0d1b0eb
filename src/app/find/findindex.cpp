#include "app/find/findindex.h"

#include "base/text.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace ellwynd {

namespace {

QString joined(const std::vector<QString> &words, QStringView separator) {
    QString text;
    for (const QString &word : words) {
        if (!text.isEmpty())
            text += separator;
        text += word;
    }
    return text;
}

std::vector<QString> wholeWords(const std::vector<FoldedWord> &words) {
    std::vector<QString> whole;
    for (const FoldedWord &word : words) {
        if (word.isWhole)
            whole.push_back(word.text);
    }
    return whole;
}

QString initialsOf(const std::vector<QString> &words) {
    QString initials;
    for (const QString &word : words)
        initials += word.left(word.at(0).isHighSurrogate() ? 2 : 1);
    return initials;
}

/// Words in the order in which each can take the first free word that it begins: of two that can
/// take the same one, the longer is the beginning of fewer others.
std::vector<QString> longestFirst(std::vector<QString> words) {
    std::ranges::stable_sort(words, std::greater(), &QString::size);
    return words;
}

/// Whether the typed words begin words of the title, in their order.
bool beginInOrder(const std::vector<QString> &typed, const std::vector<QString> &title) {
    std::size_t at = 0;
    for (const QString &word : title) {
        if (at < typed.size() && word.startsWith(typed[at]))
            ++at;
    }
    return at == typed.size();
}

/// Whether each typed word begins another of the words.
bool beginAll(
    const std::vector<QString> &longestFirst, const std::vector<QString> &title,
    const std::vector<QString> &others) {
    // Names rarely have more words; the words beyond are not told apart.
    std::uint64_t taken = 0;
    constexpr std::size_t most = 64;
    return std::ranges::all_of(longestFirst, [&](const QString &typed) {
        std::size_t at = 0;
        for (const std::vector<QString> *words : {&title, &others}) {
            for (const QString &word : *words) {
                const std::uint64_t bit = at < most ? std::uint64_t{1} << at : 0;
                ++at;
                if ((taken & bit) == 0 && word.startsWith(typed)) {
                    taken |= bit;
                    return true;
                }
            }
        }
        return false;
    });
}

} // namespace

struct FindIndex::Query {
    explicit Query(std::string_view typed)
        : words(wholeWords(foldedWords(typed))),
          longest(longestFirst(words)),
          phrase(joined(words, u" ")),
          letters(joined(words, {})) {}

    std::vector<QString> words;
    std::vector<QString> longest;
    QString phrase;
    QString letters;
};

struct FindIndex::Match {
    const Searched *found;
    Rank rank;
};

FindIndex::FindIndex(std::vector<FindEntry> entries, const std::vector<FindEntry> &suggestions)
    : suggested(suggestions) {
    all.reserve(entries.size());
    for (FindEntry &entry : entries)
        all.push_back(prepared(std::move(entry)));
}

FindIndex::Searched FindIndex::prepared(FindEntry entry) {
    Searched searched;
    const std::vector<FoldedWord> words = foldedWords(entry.title);
    searched.title = wholeWords(words);
    for (const FoldedWord &word : words) {
        if (!word.isWhole)
            searched.others.push_back(word.text);
    }
    searched.names.push_back(joined(searched.title, u" "));
    for (const std::string &name : entry.otherNames) {
        const std::vector<FoldedWord> otherWords = foldedWords(name);
        // A word that the title shows is not there twice.
        for (const FoldedWord &word : otherWords) {
            if (std::ranges::find(searched.title, word.text) == searched.title.end())
                searched.others.push_back(word.text);
        }
        searched.names.push_back(joined(wholeWords(otherWords), u" "));
    }
    searched.initials = initialsOf(searched.title);
    searched.entry = std::move(entry);
    return searched;
}

FindIndex::Rank FindIndex::rank(const Searched &searched, const Query &query) {
    if (std::ranges::find(searched.names, query.phrase) != searched.names.end())
        return Rank::whole;
    if (searched.names.front().startsWith(query.phrase))
        return Rank::beginning;
    if (beginInOrder(query.words, searched.title))
        return Rank::wordsInOrder;
    if (beginAll(query.longest, searched.title, searched.others))
        return Rank::words;
    return searched.initials == query.letters ? Rank::initials : Rank::none;
}

bool FindIndex::isBetter(const Match &a, const Match &b) {
    const auto key = [](const Match &match) {
        const FindEntry &entry = match.found->entry;
        const auto sinceThen =
            entry.beginsAt ? -entry.beginsAt->time_since_epoch().count() : Date::rep{};
        return std::tuple(
            match.rank, -severity(entry.level), entry.kind, !entry.beginsAt, sinceThen,
            QStringView(match.found->names.front()), std::string_view(entry.title), entry.id,
            entry.courseID);
    };
    return key(a) < key(b);
}

std::vector<FindIndex::Match> FindIndex::matches(const Query &query) const {
    std::vector<Match> found;
    if (query.words.empty())
        return found;
    for (const Searched &searched : all) {
        if (const Rank match = rank(searched, query); match != Rank::none)
            found.push_back({&searched, match});
    }
    return found;
}

std::vector<FindEntry> FindIndex::find(std::string_view typed) const {
    if (trim(typed).empty())
        return suggested;
    std::vector<Match> found = matches(Query(typed));
    const std::size_t shown = std::min(found.size(), mostResults);
    std::ranges::partial_sort(found, found.begin() + std::ptrdiff_t(shown), isBetter);
    std::vector<FindEntry> best;
    for (std::size_t i = 0; i < shown; ++i)
        best.push_back(found[i].found->entry);
    return best;
}

std::vector<FindEntry> FindIndex::named(std::string_view name) const {
    std::vector<Match> found = matches(Query(name));
    std::ranges::sort(found, isBetter);
    const bool anyWhole = !found.empty() && found.front().rank == Rank::whole;
    std::vector<FindEntry> entries;
    for (const Match &match : found) {
        if (anyWhole ? match.rank == Rank::whole : match.rank < Rank::initials)
            entries.push_back(match.found->entry);
    }
    return entries;
}

std::vector<MatchedPart> foundParts(std::string_view title, std::string_view typed) {
    std::vector<FoldedWord> words = foldedWords(title);
    // Whole words are taken before later beginnings, as when matching.
    std::ranges::stable_partition(words, &FoldedWord::isWhole);
    const std::vector<QString> typedWords = wholeWords(foldedWords(typed));
    std::vector<MatchedPart> parts;
    for (const QString &wanted : longestFirst(typedWords)) {
        const auto found = std::ranges::find_if(
            words, [&](const FoldedWord &word) { return word.text.startsWith(wanted); });
        if (found == words.end())
            continue;
        parts.push_back({found->begin, found->ends[std::size_t(wanted.size()) - 1] - found->begin});
        words.erase(found);
    }
    if (parts.empty() && !typedWords.empty()) {
        const std::vector<QString> whole = wholeWords(words);
        const QString initials = initialsOf(whole);
        if (!whole.empty() && initials == joined(typedWords, {})) {
            for (const FoldedWord &word : words) {
                if (word.isWhole)
                    parts.push_back({word.begin, word.ends.front() - word.begin});
            }
        }
    }
    std::ranges::sort(parts, {}, &MatchedPart::begin);
    return parts;
}

} // namespace ellwynd
