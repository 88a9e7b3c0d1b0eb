// What a command says on a terminal while it waits.
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace ellwynd::cli {

/// Whoever reads standard error.
struct Terminal {
    /// False where it is a file or a pipe, which progress would only litter.
    bool present = false;
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
};

/// One line about work that takes longer than a second, counted from its first step. It is written
/// over as the work comes further and wiped with each step's end, so that nothing of it stands
/// before results or messages.
class Progress {
  public:
    Progress(std::ostream &err, Terminal terminal);

    /// What is waited for from now on.
    void begin(std::string step);
    /// Shows the step when its time has come. A timer calls this.
    void update();
    /// Wipes what is shown.
    void end();

  private:
    void wipe();

    std::ostream &err;
    Terminal terminal;
    std::optional<std::chrono::steady_clock::time_point> since;
    std::string step;
    /// Columns that the line takes on the screen.
    std::size_t shown = 0;
    QTimer timer;
};

} // namespace ellwynd::cli
