#include "cli/progress.h"

#include "base/text.h"
#include "cli/terminaltext.h"

#include <algorithm>
#include <ostream>

namespace ellwynd::cli {

namespace {

/// Work that takes less time shows no progress.
constexpr std::chrono::seconds displayDelay{1};

} // namespace

Progress::Progress(std::ostream &err, Terminal terminal) : err(err), terminal(std::move(terminal)) {
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { update(); });
}

void Progress::begin(std::string next) {
    if (!terminal.present)
        return;
    if (!since)
        since = terminal.now();
    step = terminalText(next);
    update();
}

void Progress::update() {
    if (step.empty())
        return;
    const auto remaining = *since + displayDelay - terminal.now();
    if (remaining.count() > 0) {
        timer.start(std::chrono::ceil<std::chrono::milliseconds>(remaining));
        return;
    }
    wipe();
    // The last column stays free: some terminals wrap when it is written to.
    const std::string line = fitted(step, terminal.columns() - 1);
    // The cursor stays at the start of the line, so that a log line overwrites this one.
    err << line << '\r' << std::flush;
    shown = displayWidth(line);
}

void Progress::end() {
    timer.stop();
    step.clear();
    wipe();
}

void Progress::wipe() {
    // The terminal may have become narrower since.
    if (shown > 0)
        err << std::string(std::min(shown, terminal.columns() - 1), ' ') << '\r' << std::flush;
    shown = 0;
}

} // namespace ellwynd::cli
