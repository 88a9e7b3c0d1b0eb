#include "preferences/preferencevalue.h"

#include "base/json.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace ellwynd {

namespace {

using nlohmann::json;

template<class Number>
std::optional<Number> parseWhole(std::string_view word) {
    Number number{};
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc{} || end != word.data() + word.size())
        return std::nullopt;
    return number;
}

} // namespace

std::optional<std::int64_t> wholeNumber(double real) {
    constexpr double limit = 0x1p63;
    if (real >= -limit && real < limit && std::trunc(real) == real)
        return static_cast<std::int64_t>(real);
    return std::nullopt;
}

PreferenceValue parsePreferenceValue(std::string_view word) {
    if (word == "YES" || word == "true")
        return true;
    if (word == "NO" || word == "false")
        return false;
    if (const auto integer = parseWhole<std::int64_t>(word))
        return *integer;
    if (const auto real = parseWhole<double>(word); real && std::isfinite(*real))
        return *real;
    return std::string(word);
}

json asJSON(const PreferenceValue &value) {
    return std::visit([](const auto &v) { return json(v); }, value);
}

std::optional<PreferenceValue> fromJSON(const json &value) {
    switch (value.type()) {
    case json::value_t::boolean:
        return value.get<bool>();
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
        return integerOf(value);
    case json::value_t::number_float:
        return value.get<double>();
    case json::value_t::string:
        return value.get<std::string>();
    case json::value_t::array: {
        IDList list;
        for (const auto &item : value) {
            const auto element = fromJSON(item);
            const auto id = element ? valueAs<std::int64_t>(*element) : std::nullopt;
            if (!id)
                return std::nullopt;
            list.push_back(*id);
        }
        return list;
    }
    default:
        return std::nullopt;
    }
}

std::string toJSON(const PreferenceValue &value) {
    return asJSON(value).dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace ellwynd
