#include "memory/historyfile.h"

#include "base/files.h"
#include "base/json.h"

#include <fmt/compile.h>
#include <nlohmann/json.hpp>

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

template<class T>
T member(dom::object entry, std::size_t index, std::string_view key) {
    T value{};
    const simdjson::error_code error = entry[key].get(value);
    if (error == simdjson::NO_SUCH_FIELD)
        fail(index, key, "is missing");
    if (error != simdjson::SUCCESS)
        fail(index, key, "has another type");
    return value;
}

/// Only unknown levels can contain characters that JSON must escape.
std::string quoted(const RosterSnapshot &entry) {
    using json = nlohmann::json;
    return recordedLevel(entry).isKnown()
        ? "\"" + entry.level + "\""
        : json(entry.level).dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace

std::vector<RosterSnapshot> decodeHistory(std::string_view text) {
    dom::parser parser;
    dom::array array;
    if (const auto error = parser.allocate(text.size(), maxJSONDepth))
        throw FileError(problem(error));
    if (const auto error = parser.parse(text.data(), text.size()).get(array))
        throw FileError(problem(error));
    std::vector<RosterSnapshot> entries;
    entries.reserve(array.size());
    // All entries of a visit have the same instant, which is parsed once.
    std::string_view lastText;
    Date lastDate;
    for (const dom::element element : array) {
        const std::size_t index = entries.size();
        dom::object entry;
        if (element.get(entry) != simdjson::SUCCESS)
            fail(index, "the entry", "has another type");
        const auto instant = member<std::string_view>(entry, index, "recordedAt");
        if (instant != lastText || index == 0) {
            const auto date = parseInstant(instant);
            if (!date)
                fail(index, "recordedAt", "is not an instant");
            lastText = instant;
            lastDate = *date;
        }
        entries.push_back(
            {.courseID = member<std::int64_t>(entry, index, "courseID"),
             .studentID = member<std::int64_t>(entry, index, "studentID"),
             .recordedAt = lastDate,
             .level = std::string(member<std::string_view>(entry, index, "level")),
             .missingCount = member<std::int64_t>(entry, index, "missingCount")});
    }
    return entries;
}

std::string encodeHistory(const std::vector<RosterSnapshot> &entries) {
    constexpr std::size_t typicalEntrySize = 120;
    std::string text;
    text.reserve(2 + entries.size() * typicalEntrySize);
    text += '[';
    std::string instant;
    std::optional<Date> written;
    for (const RosterSnapshot &entry : entries) {
        if (entry.recordedAt != written) {
            instant = formatInstant(entry.recordedAt);
            written = entry.recordedAt;
        }
        if (text.size() > 1)
            text += ',';
        fmt::format_to(
            std::back_inserter(text),
            FMT_COMPILE("{{\"courseID\":{},\"studentID\":{},\"recordedAt\":\"{}\",\"level\":{},"
                        "\"missingCount\":{}}}"),
            entry.courseID, entry.studentID, instant, quoted(entry), entry.missingCount);
    }
    text += ']';
    return text;
}

} // namespace ellwynd
