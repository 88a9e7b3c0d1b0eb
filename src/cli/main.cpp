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
    return ellwynd::cli::run(
        words, std::cin, std::cout, std::cerr, ellwynd::directories::config() / "Preferences.json",
        {.present = ::isatty(STDERR_FILENO) != 0});
}
