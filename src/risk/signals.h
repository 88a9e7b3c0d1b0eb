// The signals of a score, and what each of them added to it.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace ellwynd {

/// In the order in which they are listed.
enum class Signal { missing, pastDue, time, grade, inactivity };
inline constexpr std::array allSignals{
    Signal::missing, Signal::pastDue, Signal::time, Signal::grade, Signal::inactivity};

/// "Missing work", "Past due", "Time in course", "Current score", "Inactivity".
[[nodiscard]] std::string_view signalName(Signal signal);

/// What each signal added to a score, after weight and damping; absent for a signal that had no
/// data for the student.
class SignalShares {
  public:
    [[nodiscard]] std::optional<double> &operator[](Signal signal) {
        return shares[std::size_t(signal)];
    }
    [[nodiscard]] const std::optional<double> &operator[](Signal signal) const {
        return shares[std::size_t(signal)];
    }
    [[nodiscard]] double sum() const;
    bool operator==(const SignalShares &) const = default;

  private:
    std::array<std::optional<double>, allSignals.size()> shares;
};

/// The most that any signal adds to a score.
inline constexpr double maxSignalShare = 0.3;

/// A rule that lifts a score to a minimum.
enum class ScoreFloor { failingGrade, mostWorkMissing, belowPassing };

/// "failing grade", "most work missing", "below passing".
[[nodiscard]] std::string_view floorName(ScoreFloor floor);

} // namespace ellwynd
