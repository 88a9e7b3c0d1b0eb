#include "memory/historyfile.h"

#include "base/files.h"
#include "base/json.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <simdjson.h>

namespace ellwynd {

namespace {

namespace dom = simdjson::dom;

/// The program's message for an error of the parser.
std::string problem(simdjson::error_code error) {
    switch (error) {
    case simdjson::EMPTY:
        return "The file is empty.";
    case simdjson::INCORRECT_TYPE:
        return "Expected an array.";
    case simdjson::DEPTH_ERROR:
        return "It is nested too deeply.";
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
        return "It is too large.";
    default:
        return "It is not valid JSON.";
    }
}

[[noreturn]] void fail(std::size_t index, std::string_view key, std::string_view problem) {
    throw FileError(fmt::format("Entry {}: {} {}.", index, key, problem));
}

[[noreturn]] void fail(std::size_t index, std::string_view key, simdjson::error_code error) {
    fail(index, key, error == simdjson::NO_SUCH_FIELD ? "is missing" : "has another type");
}

std::string_view textOf(dom::object entry, std::size_t index, std::string_view key) {
    std::string_view value;
    if (const simdjson::error_code error = entry[key].get(value))
        fail(index, key, error);
    return value;
}

/// Absent for a number that is out of range, and for null.
std::optional<std::int64_t> integer(dom::object entry, std::size_t index, std::string_view key) {
    dom::element value;
    if (const simdjson::error_code error = entry[key].get(value))
        fail(index, key, error);
    std::int64_t number = 0;
    if (value.get(number) == simdjson::SUCCESS)
        return number;
    constexpr double limit = 0x1p63;
    double real = 0;
    const bool isLarge = value.get(real) == simdjson::SUCCESS && std::abs(real) >= limit;
    if (!isLarge && !value.is_null())
        fail(index, key, "has another type");
    return std::nullopt;
}

/// The text with numbers that the parser rejects, such as 1e999, as null or as reals. Absent if the
/// text is not JSON otherwise.
std::optional<std::string> withoutHugeNumbers(std::string_view text) {
    try {
        return parseJSON(text).dump();
    } catch (const FileError &) {
        return std::nullopt;
    }
}

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
        dom::object entry;
        if (element.get(entry) != simdjson::SUCCESS)
            fail(index, "the entry", "has another type");
        const auto instant = textOf(entry, index, "recordedAt");
        if (instant != lastText || index == 0) {
            const auto date = parseInstant(instant);
            if (!date)
                fail(index, "recordedAt", "is not an instant");
            lastText = instant;
            lastDate = *date;
        }
        const auto courseID = integer(entry, index, "courseID");
        const auto studentID = integer(entry, index, "studentID");
        const auto missingCount = integer(entry, index, "missingCount");
        const auto level = textOf(entry, index, "level");
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
    dom::array array;
    if (const auto error = parser.allocate(text.size(), maxJSONDepth))
        throw FileError(problem(error));
    auto error = parser.parse(text.data(), text.size()).get(array);
    if (error == simdjson::NUMBER_ERROR) {
        if (const auto readable = withoutHugeNumbers(text))
            error = parser.parse(*readable).get(array);
    }
    if (error)
        throw FileError(problem(error));
    VisitReader reader;
    reader.add(array);
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
