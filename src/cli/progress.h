// Progress of long work, on a terminal.
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace ellwynd::cli {

/// What the standard streams are connected to.
struct Terminal {
    /// Whether standard error is a terminal; progress is not shown in a file or a pipe.
    bool present = false;
    /// The file descriptor of standard input if it is a terminal, else -1.
    int keyboard = -1;
    /// The width of standard output if it is a terminal, else 0.
    std::size_t outputColumns = 0;
    /// The width of standard error's terminal now, at least 2.
    std::function<std::size_t()> columns = [] { return std::size_t{80}; };
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
};

/// One line about work that takes longer than a second, counted from its first step. Each step
/// overwrites the line and erases it at its end, so that it never mixes with results or messages.
/// What does not fit the terminal is cut off, since a line that wraps could not be erased.
class Progress {
  public:
    Progress(std::ostream &err, Terminal terminal);

    /// Starts a step. @param next what is waited for, such as "Reading the roster…"; may contain
    /// names from Canvas.
    void begin(std::string next);
    /// Shows the step once a second has passed. Called by a timer.
    void update();
    /// Ends the step and erases the line.
    void end();

  private:
    void wipe();

    std::ostream &err;
    Terminal terminal;
    std::optional<std::chrono::steady_clock::time_point> since;
    std::string step;
    /// The displayed width in columns.
    std::size_t shown = 0;
    QTimer timer;
};

} // namespace ellwynd::cli
