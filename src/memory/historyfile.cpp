#include "memory/historyfile.h"

#include "base/files.h"
#include "base/json.h"
#include "memory/entrylist.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd {

namespace {

namespace dom = simdjson::dom;

/// Adds a level's text in JSON. Only unknown ones can contain characters that must be escaped.
void addQuoted(std::string &to, RecordedLevel level, std::string_view text) {
    using nlohmann::json;
    if (level.isKnown())
        to.append(1, '"').append(text).append(1, '"');
    else
        to += json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

void addNumber(std::string &to, std::int64_t number) {
    const fmt::format_int digits(number);
    to.append(digits.data(), digits.size());
}

/// Makes visits of the entries of a file, which may come in parts.
class VisitReader {
  public:
    /// @throws FileError for an entry that is not one.
    void add(dom::array part) {
        for (const dom::element element : part)
            add(element);
    }

    [[nodiscard]] HistoryVisits end() {
        endVisit();
        return std::move(visits);
    }

  private:
    void add(dom::element element) {
        const dom::object entry = entryList::objectOf(element, index);
        const auto instant = entryList::textOf(entry, index, "recordedAt");
        if (instant != lastText || index == 0) {
            const auto date = parseInstant(instant);
            if (!date)
                throw FileError(fmt::format("Entry {}: recordedAt is not an instant.", index));
            lastText = instant;
            lastDate = *date;
        }
        const auto courseID = entryList::integerOf(entry, index, "courseID");
        const auto studentID = entryList::integerOf(entry, index, "studentID");
        const auto missingCount = entryList::integerOf(entry, index, "missingCount");
        const auto level = entryList::textOf(entry, index, "level");
        ++index;
        if (!courseID || !studentID || !missingCount)
            return;
        if (!entries.empty() &&
            (entries.back().courseID != *courseID || entries.back().recordedAt != lastDate))
            endVisit();
        entries.push_back(
            {.courseID = *courseID,
             .studentID = *studentID,
             .recordedAt = lastDate,
             .level = std::string(level),
             .missingCount = *missingCount});
    }

    void endVisit() {
        if (!entries.empty())
            visits.push_back(std::make_shared<const HistoryVisit>(entries));
        entries.clear();
    }

    HistoryVisits visits;
    /// The entries of the visit that is being read.
    std::vector<RosterSnapshot> entries;
    std::size_t index = 0;
    /// All entries of a visit have the same instant, which is parsed once.
    std::string lastText;
    Date lastDate;
};

/// Reads a file of compact JSON, as `encodeHistory` writes it, in parts of half a megabyte: the
/// parser needs several times the memory of its text, and new memory takes longer than the parsing.
/// Absent if a part is not JSON, as when a text contains what separates entries.
/// @throws FileError for an entry that is not one.
std::optional<HistoryVisits> decodeInParts(std::string_view text) {
    constexpr std::size_t partSize = 512UL * 1024;
    constexpr std::string_view separator = "},{";
    if (!text.starts_with("[") || !text.ends_with("]"))
        return std::nullopt;
    text = text.substr(1, text.size() - 2);
    dom::parser parser;
    VisitReader reader;
    std::string part;
    // A part ends with the first entry after its size.
    constexpr std::size_t longEntry = 4UL * 1024;
    if (parser.allocate(std::min(text.size() + 2, partSize + longEntry), maxJSONDepth))
        return std::nullopt;
    while (!text.empty()) {
        // An entry of another program may be longer than a part.
        const std::size_t at = text.find(separator, partSize);
        const std::size_t size = at == std::string_view::npos ? text.size() : at + 1;
        part = "[";
        part.reserve(size + 2 + simdjson::SIMDJSON_PADDING);
        part.append(text.substr(0, size)).append("]");
        dom::array array;
        if (parser.parse(part).get(array))
            return std::nullopt;
        reader.add(array);
        text.remove_prefix(std::min(text.size(), size + 1));
    }
    return reader.end();
}

/// @throws FileError
HistoryVisits decodeWhole(std::string_view text) {
    dom::parser parser;
    VisitReader reader;
    reader.add(entryList::parse(parser, text));
    return reader.end();
}

} // namespace

HistoryVisits decodeHistory(std::string_view text) {
    if (auto visits = decodeInParts(text))
        return *std::move(visits);
    return decodeWhole(text);
}

std::string encodeHistory(const HistoryVisits &visits) {
    constexpr std::size_t typicalEntrySize = 120;
    std::size_t entries = 0;
    for (const auto &visit : visits)
        entries += visit->size();
    std::string text;
    text.reserve(2 + entries * typicalEntrySize);
    text += '[';
    for (const auto &visit : visits) {
        // What all entries of a visit have in common is formatted once.
        const std::string course =
            fmt::format("{{\"courseID\":{},\"studentID\":", visit->courseID());
        const std::string instant =
            fmt::format(",\"recordedAt\":\"{}\",\"level\":", formatInstant(visit->recordedAt()));
        for (std::size_t i = 0; i < visit->size(); ++i) {
            if (text.size() > 1)
                text += ',';
            text += course;
            addNumber(text, visit->studentID(i));
            text += instant;
            addQuoted(text, visit->level(i), visit->levelText(i));
            text += ",\"missingCount\":";
            addNumber(text, visit->missingCount(i));
            text += '}';
        }
    }
    text += ']';
    return text;
}

} // namespace ellwynd
