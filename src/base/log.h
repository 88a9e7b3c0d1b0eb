// The structured log: one subsystem, a category per area, two levels.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

class LogFilter;

/// A handle on one category of the program's log. Lines go to the sink that the program installs,
/// otherwise to standard error.
///
/// Whoever logs keeps to values that identify no student: course ids, counts, and messages. A
/// library's own error text that may quote a file is not logged.
class Log {
  public:
    static constexpr std::string_view subsystem = "com.varnok.Ellwynd";

    enum class Level { info, error };

    /// @param category must outlive the handle; string literals do.
    explicit constexpr Log(std::string_view category) : name(category) {}

    /// Routine events.
    void info(std::string_view message) const { write(Level::info, message); }
    /// Failures.
    void error(std::string_view message) const { write(Level::error, message); }

    [[nodiscard]] std::string_view category() const { return name; }

    /// Receives each line, without control characters. May be called on any thread.
    using Sink = void (*)(std::string_view category, Level level, std::string_view message);
    /// Sends the lines elsewhere. A null pointer stands for standard error.
    static void setSink(Sink sink);

    /// Chooses which lines are written; all of them before the first call. Only while no other
    /// thread logs.
    static void setFilter(LogFilter filter);

    /// One line on standard error.
    static void
    writeToStandardError(std::string_view category, Level level, std::string_view message);

  private:
    void write(Level level, std::string_view message) const;

    std::string_view name;
};

} // namespace ellwynd
