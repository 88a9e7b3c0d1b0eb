#include "preferences/preferencekeys.h"

namespace ellwynd {

namespace {

/// Whether a row's default is of the row's type and one of its accepted values.
constexpr bool isConsistent(const Preference &row) {
    using Type = Preference::Type;
    const auto fits = [&]<class T>(Type type, T) {
        return row.type == type && std::holds_alternative<T>(row.fallback);
    };
    const bool isOfCourse = row.key.starts_with(preferences::coursePrefix);
    const bool hasType = fits(Type::boolean, false) || fits(Type::integer, std::int64_t{}) ||
        fits(Type::real, 0.0) || fits(Type::text, std::string_view()) ||
        (std::holds_alternative<std::monostate>(row.fallback) &&
         (row.type == Type::idList || isOfCourse));
    // Not with get_if: under the sanitizers GCC does not take a pointer into the table for a
    // constant.
    const auto isInRange = [&]<class T>(T) {
        return !std::holds_alternative<T>(row.fallback) ||
            row.range.contains(double(std::get<T>(row.fallback)));
    };
    const bool isChoice = row.choices.empty() ||
        !std::holds_alternative<std::string_view>(row.fallback) ||
        std::ranges::find(row.choices, std::get<std::string_view>(row.fallback)) !=
            row.choices.end();
    const bool isNumber = row.type == Type::integer || row.type == Type::real;
    return hasType && !row.meaning.empty() && !row.control.empty() &&
        (isNumber ? row.range.minimum > -NumberRange::unlimited : row.range == NumberRange()) &&
        isInRange(std::int64_t{}) && isInRange(0.0) &&
        (row.choices.empty() || row.type == Type::text) && isChoice &&
        std::ranges::count(preferences::table, row.key, &Preference::key) == 1;
}

static_assert([] {
    for (const Preference &row : preferences::table) {
        if (!isConsistent(row))
            return false;
    }
    return true;
}());

struct AsValue {
    std::optional<PreferenceValue> operator()(std::monostate) const { return std::nullopt; }
    std::optional<PreferenceValue> operator()(std::string_view text) const {
        return text.empty() ? std::nullopt : std::optional<PreferenceValue>(std::string(text));
    }
    template<class T>
    std::optional<PreferenceValue> operator()(T value) const {
        return PreferenceValue(value);
    }
};

} // namespace

const Preference *preferences::find(std::string_view key) {
    const auto found =
        std::ranges::find_if(table, [&](const Preference &row) { return row.matches(key); });
    return found != table.end() ? &*found : nullptr;
}

bool preferences::isSynced(std::string_view key) {
    const Preference *row = find(key);
    return row != nullptr ? row->synced : key.starts_with(coursePrefix);
}

std::optional<PreferenceValue>
preferences::converted(std::string_view key, const PreferenceValue &value) {
    const Preference *row = find(key);
    return row != nullptr ? row->converted(value) : std::optional(value);
}

PreferenceMap preferences::registeredDefaults() {
    PreferenceMap map;
    for (const Preference &row : table) {
        if (auto value = std::visit(AsValue(), row.fallback))
            map.emplace(row.key, *std::move(value));
    }
    return map;
}

} // namespace ellwynd
