// One row of the table of preferences, and what follows from it.
#pragma once

#include "preferences/preferencevalue.h"

#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>

namespace ellwynd {

/// A value that a preference does not take. The message says what it takes, on one line.
class InvalidPreference : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// The numbers that a preference takes, and how its control steps through them.
struct NumberRange {
    static constexpr double unlimited = std::numeric_limits<double>::infinity();

    enum class Outside {
        /// Nobody can enter it; a stored one is read as it is.
        refused,
        /// The nearest limit stands for it at every read and write.
        clamped,
    };

    double minimum = -unlimited;
    double maximum = unlimited;
    double step = 1;
    Outside outside = Outside::refused;
    /// Whether a number that is entered is rounded to the nearest multiple of the step.
    bool rounded = false;

    bool operator==(const NumberRange &) const = default;

    [[nodiscard]] constexpr bool contains(double number) const {
        return number >= minimum && number <= maximum;
    }
    /// The number itself where it is not to be rounded.
    [[nodiscard]] double roundedToStep(double number) const {
        return rounded ? std::round(number / step) * step : number;
    }
    /// The number itself where it is not to be clamped.
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
    /// In the preference's own type; none for a list, and for what follows another preference.
    using Fallback = std::variant<std::monostate, bool, std::int64_t, double, std::string_view>;
    /// Which change of a preference views are told of by a signal of its own.
    enum class ChangeSignal { none, appearance, accentTheme, textScale, termLimit };

    /// What writes a preference that no control and no command is meant for.
    static constexpr std::string_view theProgram = "the program itself";

    /// In the key of what each course has of its own, "{id}" stands for the course's id.
    std::string_view key;
    Type type = Type::boolean;
    /// What an absent one reads as; an empty text is not registered as a default.
    Fallback fallback;
    /// Of integers and reals.
    NumberRange range;
    /// Of texts: the only ones it takes; none when it takes any.
    std::span<const std::string_view> choices;
    /// Whether it follows the teacher to other computers.
    bool synced = false;
    ChangeSignal changeSignal = ChangeSignal::none;
    /// What the teacher changes it with, in the words of the menus; else `theProgram`.
    std::string_view control = theProgram;
    /// One sentence for the manual.
    std::string_view meaning;

    [[nodiscard]] constexpr bool isForTeachers() const { return control != theProgram; }

    /// Whether a key is this preference's; the id in a course's key is plain decimal.
    [[nodiscard]] bool matches(std::string_view name) const;

    /// "a whole number from 1 to 60".
    [[nodiscard]] std::string takes() const;

    /// A value that somebody enters under a key, as the preference's type and within its limits.
    /// @throws InvalidPreference
    [[nodiscard]] PreferenceValue accept(std::string_view name, const PreferenceValue &value) const;
};

} // namespace ellwynd
