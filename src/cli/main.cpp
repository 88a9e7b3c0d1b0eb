#include "base/endprocess.h"
#include "cli/run.h"
#include "platform/folders/directories.h"
#include "platform/log/systemlog.h"

#include <QCoreApplication>

#include <sys/ioctl.h>

#include <iostream>
#include <unistd.h>
#include <vector>

/// The width of the terminal that a stream is connected to; of a usual one if it is not known.
static std::size_t columnsOf(int stream) {
    constexpr std::size_t usual = 80;
    ::winsize size{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    const bool known = ::ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return known ? size.ws_col : usual;
}

int main(int argc, char **argv) {
    ellwynd::installSystemLog();
    const std::vector<std::string> words(argv + 1, argv + argc);
    const QCoreApplication application(argc, argv);
    ellwynd::endProcess(ellwynd::cli::run(
        words, std::cin, std::cout, std::cerr, ellwynd::directories::config() / "Preferences.json",
        {.present = ::isatty(STDERR_FILENO) != 0,
         .keyboard = ::isatty(STDIN_FILENO) != 0 ? STDIN_FILENO : -1,
         .outputColumns = ::isatty(STDOUT_FILENO) != 0 ? columnsOf(STDOUT_FILENO) : 0,
         .columns = [] { return columnsOf(STDERR_FILENO); }}));
}
