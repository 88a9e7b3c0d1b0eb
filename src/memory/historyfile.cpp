#include "memory/historyfile.h"

#include "base/files.h"
#include "base/json.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

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

} // namespace

HistoryVisits decodeHistory(std::string_view text) {
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
    HistoryVisits visits;
    // The entries of the visit that is being read.
    std::vector<RosterSnapshot> entries;
    const auto endVisit = [&] {
        if (!entries.empty())
            visits.push_back(std::make_shared<const HistoryVisit>(entries));
        entries.clear();
    };
    std::size_t index = 0;
    // All entries of a visit have the same instant, which is parsed once.
    std::string_view lastText;
    Date lastDate;
    for (const dom::element element : array) {
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
        if (courseID && studentID && missingCount) {
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
    }
    endVisit();
    return visits;
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
