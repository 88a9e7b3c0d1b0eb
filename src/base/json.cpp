#include "base/json.h"

#include "base/files.h"
#include "base/text.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace ellwynd {

namespace {

using nlohmann::json;

/// The position behind the closing quote of the string that begins at `begin`.
std::size_t endOfString(std::string_view text, std::size_t begin) {
    for (std::size_t i = begin + 1; i < text.size(); ++i) {
        if (text[i] == '\\')
            ++i;
        else if (text[i] == '"')
            return i + 1;
    }
    return text.size();
}

/// Whether arrays and objects are nested more deeply than a limit. Also for text that is not JSON.
bool isDeeper(std::string_view text, int limit) {
    int depth = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '"') {
            i = endOfString(text, i);
            continue;
        }
        if (text[i] == '[' || text[i] == '{')
            ++depth;
        else if (text[i] == ']' || text[i] == '}')
            --depth;
        if (depth > limit)
            return true;
        ++i;
    }
    return false;
}

bool overflows(std::string_view number) {
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    // An underflow is out of range too, but reads as zero.
    return error == std::errc::result_out_of_range && number.find("e-") == std::string_view::npos &&
        number.find("E-") == std::string_view::npos;
}

/// The text with every number that is too large for a double replaced by null.
std::string withoutOverflows(std::string_view text) {
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin + 1;
        if (text[begin] == '"')
            end = endOfString(text, begin);
        else if (text[begin] == '-' || isDigit(text[begin]))
            end = std::min(text.find_first_not_of("0123456789+-.eE", begin), text.size());
        const std::string_view token = text.substr(begin, end - begin);
        result += token.size() > 1 && token.front() != '"' && overflows(token) ? "null" : token;
        begin = end;
    }
    return result;
}

} // namespace

json parseJSON(std::string_view text, int maxDepth) {
    if (isDeeper(text, maxDepth))
        throw FileError("It is nested too deeply.");
    try {
        try {
            return json::parse(text);
        } catch (const json::out_of_range &) {
            return json::parse(withoutOverflows(text));
        }
    } catch (const json::exception &) {
        // The library's message would quote the text.
        throw FileError("It is not valid JSON.");
    }
}

const json &memberOf(const json &object, std::string_view key) {
    static const json null;
    if (!object.is_object())
        return null;
    const auto found = object.find(key);
    return found != object.end() ? *found : null;
}

std::optional<std::int64_t> integerOf(const json &value) {
    const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= INT64_MAX
                                                 : value.is_number_integer();
    return fits ? std::optional{value.get<std::int64_t>()} : std::nullopt;
}

std::optional<double> numberOf(const json &value) {
    return value.is_number() ? std::optional{value.get<double>()} : std::nullopt;
}

bool isOutOfRange(const json &object, std::string_view key) {
    const json &value = memberOf(object, key);
    if (value.is_null())
        return object.is_object() && object.contains(key);
    constexpr double limit = 0x1p63;
    return value.is_number_float() ? std::abs(value.get<double>()) >= limit
                                   : value.is_number_unsigned() && !integerOf(value);
}

std::optional<std::string> stringOf(const json &value) {
    return value.is_string() ? std::optional{value.get<std::string>()} : std::nullopt;
}

std::string prettyJSON(const json &value) {
    return value.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

} // namespace ellwynd
