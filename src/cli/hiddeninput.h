// Typing on a terminal without an echo.
#pragma once

#include <termios.h>

namespace ellwynd::cli {

/// While it exists, what is typed on a terminal is not shown. A signal that ends the process shows
/// it again first. One at a time.
class HiddenInput {
  public:
    /// @param terminal a file descriptor; nothing happens if it is not a terminal.
    explicit HiddenInput(int terminal);
    ~HiddenInput();
    HiddenInput(const HiddenInput &) = delete;
    HiddenInput &operator=(const HiddenInput &) = delete;

  private:
    int terminal;
    termios before{};
    bool isHidden = false;
};

} // namespace ellwynd::cli
