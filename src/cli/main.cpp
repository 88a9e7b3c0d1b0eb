#include "base/endprocess.h"
#include "cli/run.h"
#include "platform/folders/directories.h"
#include "platform/log/systemlog.h"

#include <QCoreApplication>

#include <iostream>
#include <unistd.h>
#include <vector>

int main(int argc, char **argv) {
    ellwynd::installSystemLog();
    const std::vector<std::string> words(argv + 1, argv + argc);
    const QCoreApplication application(argc, argv);
    ellwynd::endProcess(ellwynd::cli::run(
        words, std::cin, std::cout, std::cerr, ellwynd::directories::config() / "Preferences.json",
        {.present = ::isatty(STDERR_FILENO) != 0,
         .keyboard = ::isatty(STDIN_FILENO) != 0 ? STDIN_FILENO : -1}));
}
