#include "cli/hiddeninput.h"

#include <array>
#include <csignal>

namespace ellwynd::cli {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// What a signal handler needs.
int hiddenTerminal = -1;
termios shownMode{};

void showAndEnd(int signal) {
    ::tcsetattr(hiddenTerminal, TCSAFLUSH, &shownMode);
    // The handler is reset, so this ends the process as the signal would have.
    ::raise(signal);
}

} // namespace

HiddenInput::HiddenInput(int terminal) : terminal(terminal) {
    if (::tcgetattr(terminal, &before) != 0)
        return;
    hiddenTerminal = terminal;
    shownMode = before;
    struct sigaction action {};
    action.sa_handler = showAndEnd;
    action.sa_flags = int(SA_RESETHAND | SA_NODEFER);
    for (const int signal : endingSignals)
        ::sigaction(signal, &action, nullptr);
    termios hidden = before;
    hidden.c_lflag &= ~tcflag_t(ECHO);
    hidden.c_lflag |= ECHONL;
    isHidden = ::tcsetattr(terminal, TCSAFLUSH, &hidden) == 0;
}

HiddenInput::~HiddenInput() {
    if (!isHidden)
        return;
    ::tcsetattr(terminal, TCSAFLUSH, &before);
    for (const int signal : endingSignals)
        ::signal(signal, SIG_DFL);
}

} // namespace ellwynd::cli
