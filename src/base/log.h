// The structured log: one subsystem, a category per area, two levels.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

/// A handle on one category of the program's log. Lines go to the systemd journal with fields
/// (SUBSYSTEM, CATEGORY, PRIORITY) where there is a journal, otherwise to standard error.
///
/// Whoever logs keeps to values that identify no student: course ids, counts, and messages.
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

    /// Where lines go instead, for tests that read them. A null pointer restores the default.
    using Sink = void (*)(std::string_view category, Level level, std::string_view message);
    static void setSink(Sink sink);

  private:
    void write(Level level, std::string_view message) const;

    std::string_view name;
};

} // namespace ellwynd
