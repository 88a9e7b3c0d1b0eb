#include "cli/commandcontext.h"
#include "cli/hiddeninput.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <pty.h>
#include <sstream>
#include <unistd.h>

namespace ellwynd::cli {
namespace {

/// A terminal without anybody at it.
class PseudoTerminal {
  public:
    PseudoTerminal() {
        if (::openpty(&controller, &terminal, nullptr, nullptr, nullptr) != 0)
            throw std::runtime_error("no pseudo-terminal");
    }
    ~PseudoTerminal() {
        ::close(terminal);
        ::close(controller);
    }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    [[nodiscard]] int descriptor() const { return terminal; }
    [[nodiscard]] bool echoes() const {
        termios mode{};
        EXPECT_EQ(::tcgetattr(terminal, &mode), 0);
        return (mode.c_lflag & ECHO) != 0;
    }

  private:
    int controller = -1;
    int terminal = -1;
};

TEST(HiddenInput, HidesWhileItExists) {
    const PseudoTerminal terminal;
    ASSERT_TRUE(terminal.echoes());
    {
        const HiddenInput hidden(terminal.descriptor());
        EXPECT_FALSE(terminal.echoes());
    }
    EXPECT_TRUE(terminal.echoes());
    const HiddenInput nothing(-1);
}

TEST(HiddenInput, ASignalShowsTheInputAgain) {
    const PseudoTerminal terminal;
    const pid_t child = ::fork();
    if (child == 0) {
        const HiddenInput hidden(terminal.descriptor());
        ::raise(SIGINT);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    EXPECT_TRUE(terminal.echoes());
}

TEST(HiddenInput, OnlyATerminalIsAskedForTheToken) {
    const PseudoTerminal terminal;
    const test::TemporaryFolder folder;
    for (const bool isTerminal : {false, true}) {
        std::istringstream in("secret-token\nmore");
        std::ostringstream out;
        std::ostringstream err;
        CommandContext context(
            in, out, err, folder.path() / "Preferences.json", {},
            {.keyboard = isTerminal ? terminal.descriptor() : -1});
        EXPECT_EQ(context.readSecret("Access token: "), "secret-token");
        EXPECT_EQ(err.str(), isTerminal ? "Access token: " : "");
        EXPECT_EQ(out.str(), "");
    }
}

} // namespace
} // namespace ellwynd::cli
