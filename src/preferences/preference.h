// One row of the table of preferences.
#pragma once

#include "preferences/preferencevalue.h"

#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>

namespace ellwynd {

/// A value that a preference does not accept. The message says what it accepts, on one line.
class InvalidPreference : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// The numbers that a preference accepts, and the step of its control.
struct NumberRange {
    static constexpr double unlimited = std::numeric_limits<double>::infinity();

    enum class Outside {
        /// Rejected when entered; a stored one is read unchanged.
        rejected,
        /// Replaced by the nearest limit at every read and write.
        clamped,
    };

    double minimum = -unlimited;
    double maximum = unlimited;
    double step = 1;
    Outside outside = Outside::rejected;
    /// Whether an entered number is rounded to the nearest multiple of the step.
    bool rounded = false;

    bool operator==(const NumberRange &) const = default;

    [[nodiscard]] constexpr bool contains(double number) const {
        return number >= minimum && number <= maximum;
    }
    /// The number itself unless `rounded`.
    [[nodiscard]] double roundedToStep(double number) const {
        return rounded ? std::round(number / step) * step : number;
    }
    /// The number itself unless `outside` is `clamped`.
    template<class Number>
    [[nodiscard]] constexpr Number clamped(Number number) const {
        if (outside == Outside::clamped && double(number) < minimum)
            return Number(minimum);
        if (outside == Outside::clamped && double(number) > maximum)
            return Number(maximum);
        return number;
    }
};

struct Preference {
    enum class Type { boolean, integer, real, text, idList };
    /// Of the preference's type; none for a list, and for one that defaults to another preference.
    using Fallback = std::variant<std::monostate, bool, std::int64_t, double, std::string_view>;
    /// The signal that is emitted for changes of this preference alone, if any.
    enum class ChangeSignal { none, appearance, accentTheme, textScale, termLimit };

    /// The `control` of a preference that only the program writes.
    static constexpr std::string_view internal = "the program itself";

    /// In the key of a course's preference, "{id}" is a placeholder for the course's id.
    std::string_view key;
    Type type = Type::boolean;
    /// The value when none is stored; an empty text is not registered as a default.
    Fallback fallback;
    /// For integers and reals.
    NumberRange range;
    /// For texts: the accepted ones; empty if every text is accepted.
    std::span<const std::string_view> choices;
    /// Whether it is synced with the teacher's other computers.
    bool synced = false;
    ChangeSignal changeSignal = ChangeSignal::none;
    /// Where the teacher changes it, as in the menus; or `internal`.
    std::string_view control = internal;
    /// One sentence for the manual.
    std::string_view meaning;

    [[nodiscard]] constexpr bool isForTeachers() const { return control != internal; }

    /// Whether a key is this preference's; the id in a course's key is plain decimal.
    [[nodiscard]] bool matches(std::string_view name) const;

    /// "a whole number from 1 to 60".
    [[nodiscard]] std::string acceptedValues() const;

    /// The value as this preference stores it; absent for a value of another type.
    [[nodiscard]] std::optional<PreferenceValue> converted(const PreferenceValue &value) const;

    /// An entered value, converted to the preference's type and checked against its limits.
    /// @param name the key, for the error message.
    /// @throws InvalidPreference
    [[nodiscard]] PreferenceValue accept(std::string_view name, const PreferenceValue &value) const;
};

} // namespace ellwynd
