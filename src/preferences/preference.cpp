#include "preferences/preference.h"

#include "base/text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::string_view idPlaceholder = "{id}";

std::string numberText(const char *kind, const NumberRange &range) {
    if (range.outside == NumberRange::Outside::clamped)
        return kind;
    if (range.maximum == NumberRange::unlimited)
        return fmt::format("{}, {} or more", kind, range.minimum);
    return fmt::format("{} from {} to {}", kind, range.minimum, range.maximum);
}

std::optional<PreferenceValue>
acceptInteger(const PreferenceValue &value, const NumberRange &range) {
    const auto real = valueAs<double>(value);
    auto integer = valueAs<std::int64_t>(value);
    if (!integer && real && range.rounded && range.contains(*real))
        integer = wholeNumber(range.roundedToStep(*real));
    if (!integer)
        return std::nullopt;
    integer = range.clamped(*integer);
    return range.contains(double(*integer)) ? std::optional<PreferenceValue>(integer)
                                            : std::nullopt;
}

std::optional<PreferenceValue> acceptReal(const PreferenceValue &value, const NumberRange &range) {
    const auto real = valueAs<double>(value);
    if (!real)
        return std::nullopt;
    const double number = range.clamped(*real);
    return range.contains(number) ? std::optional<PreferenceValue>(range.roundedToStep(number))
                                  : std::nullopt;
}

std::optional<PreferenceValue>
acceptText(const PreferenceValue &value, std::span<const std::string_view> choices) {
    const auto text = valueAs<std::string>(value);
    const bool known =
        choices.empty() || (text && std::ranges::find(choices, *text) != choices.end());
    return text && known ? std::optional<PreferenceValue>(*text) : std::nullopt;
}

template<class T>
std::optional<PreferenceValue> convert(const PreferenceValue &value) {
    const auto converted = valueAs<T>(value);
    return converted ? std::optional<PreferenceValue>(*converted) : std::nullopt;
}

std::optional<PreferenceValue> accepted(const Preference &row, const PreferenceValue &value) {
    switch (row.type) {
    case Preference::Type::integer:
        return acceptInteger(value, row.range);
    case Preference::Type::real:
        return acceptReal(value, row.range);
    case Preference::Type::text:
        return acceptText(value, row.choices);
    case Preference::Type::boolean:
    case Preference::Type::idList:
        return row.converted(value);
    }
    return std::nullopt;
}

} // namespace

bool Preference::matches(std::string_view name) const {
    const std::size_t position = key.find(idPlaceholder);
    if (position == std::string_view::npos)
        return name == key;
    const std::string_view before = key.substr(0, position);
    const std::string_view after = key.substr(position + idPlaceholder.size());
    if (name.size() <= before.size() + after.size() || !name.starts_with(before) ||
        !name.ends_with(after))
        return false;
    const std::string_view id =
        name.substr(before.size(), name.size() - before.size() - after.size());
    return std::ranges::all_of(id, isDigit);
}

std::optional<PreferenceValue> Preference::converted(const PreferenceValue &value) const {
    switch (type) {
    case Type::boolean:
        return convert<bool>(value);
    case Type::integer:
        return convert<std::int64_t>(value);
    case Type::real:
        return convert<double>(value);
    case Type::text:
        return convert<std::string>(value);
    case Type::idList:
        return convert<IDList>(value);
    }
    return std::nullopt;
}

std::string Preference::acceptedValues() const {
    switch (type) {
    case Type::boolean:
        return "YES or NO";
    case Type::integer:
        return numberText("a whole number", range);
    case Type::real:
        return numberText("a number", range);
    case Type::text:
        return choices.empty() ? "a text" : fmt::format("one of {}", fmt::join(choices, ", "));
    case Type::idList:
        return "a list of ids";
    }
    return {};
}

PreferenceValue Preference::accept(std::string_view name, const PreferenceValue &value) const {
    if (auto result = accepted(*this, value))
        return *std::move(result);
    throw InvalidPreference(fmt::format("{} takes {}", name, acceptedValues()));
}

} // namespace ellwynd
