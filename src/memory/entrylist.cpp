#include "memory/entrylist.h"

#include "base/files.h"
#include "base/json.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace ellwynd::entryList {

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

constexpr std::string_view otherType = "has another type";

dom::element valueOf(dom::object entry, std::size_t index, std::string_view key) {
    dom::element value;
    if (entry[key].get(value))
        fail(index, key, "is missing");
    return value;
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

} // namespace

dom::array parse(dom::parser &parser, std::string_view text) {
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
    return array;
}

dom::object objectOf(dom::element entry, std::size_t index) {
    dom::object object;
    if (entry.get(object))
        fail(index, "the entry", otherType);
    return object;
}

std::string_view textOf(dom::object entry, std::size_t index, std::string_view key) {
    std::string_view value;
    if (valueOf(entry, index, key).get(value))
        fail(index, key, otherType);
    return value;
}

std::optional<std::int64_t> integerOf(dom::object entry, std::size_t index, std::string_view key) {
    const dom::element value = valueOf(entry, index, key);
    std::int64_t integer = 0;
    if (value.get(integer) == simdjson::SUCCESS)
        return integer;
    constexpr double limit = 0x1p63;
    const auto number = numberOf(entry, index, key);
    if (number && std::abs(*number) < limit)
        fail(index, key, otherType);
    return std::nullopt;
}

std::optional<double> numberOf(dom::object entry, std::size_t index, std::string_view key) {
    const dom::element value = valueOf(entry, index, key);
    double number = 0;
    if (value.get(number) == simdjson::SUCCESS)
        return number;
    if (!value.is_null())
        fail(index, key, otherType);
    return std::nullopt;
}

} // namespace ellwynd::entryList
