// The structured log: one subsystem, a category per area, two levels.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

class LogFilter;

/// One category of the program's log. Lines go to the installed sink, by default to standard error.
///
/// Log only values that do not identify a student: course ids, counts, and messages. Do not log a
/// library's error text that may quote a file.
class Log {
  public:
    static constexpr std::string_view subsystem = "com.varnok.Ellwynd";

    enum class Level { info, error };

    /// @param name the category; must outlive this object, as string literals do.
    explicit constexpr Log(std::string_view name) : name(name) {}

    /// Routine events.
    void info(std::string_view message) const { write(Level::info, message); }
    /// Failures.
    void error(std::string_view message) const { write(Level::error, message); }

    [[nodiscard]] std::string_view category() const { return name; }

    /// Receives each line, without control characters. May be called on any thread.
    using Sink = void (*)(std::string_view category, Level level, std::string_view message);
    /// Replaces the sink; null restores standard error.
    static void setSink(Sink sink);

    /// Sets which lines are written; by default all of them. Must not be called while another
    /// thread logs.
    static void setFilter(LogFilter filter);

    /// Writes one line to standard error.
    static void
    writeToStandardError(std::string_view category, Level level, std::string_view message);

  private:
    void write(Level level, std::string_view message) const;

    std::string_view name;
};

} // namespace ellwynd
