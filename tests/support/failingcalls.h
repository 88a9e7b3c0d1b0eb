// Makes file-system calls fail, one at a time. A program that contains failingcalls.cpp calls its
// definitions in place of the C library's, from the program's own code and from libraries alike.
#pragma once

#include <string>
#include <vector>

namespace ellwynd::test {

/// What happens to a call.
struct Fault {
    /// It transfers one byte; only for read and write.
    static constexpr int shortTransfer = -1;

    /// An error number, or `shortTransfer`.
    int code = 0;
    /// Whether all later calls fail too, as if the program had been killed at this one.
    bool isLasting = false;

    /// Whether the system can answer this call so. An interrupted one is only tried again by those
    /// that may wait.
    [[nodiscard]] bool appliesTo(const std::string &function) const;
};

/// During its lifetime, the file-system calls of this thread are counted, and one of them fails.
/// There is one at a time.
class FailingCall {
  public:
    /// @param number of the call that fails, from 1; 0 if none does.
    FailingCall(int number, Fault fault);
    ~FailingCall();
    FailingCall(const FailingCall &) = delete;
    FailingCall &operator=(const FailingCall &) = delete;

    /// The names of the functions that were called, in order.
    [[nodiscard]] const std::vector<std::string> &functions() const;
    /// The one that was called `number`th; empty if there were fewer calls.
    [[nodiscard]] std::string function() const;

    /// The C library's view of whether the current call fails; for failingcalls.cpp.
    enum class Outcome { real, shortTransfer, failure };
    static Outcome next(const char *function);
};

} // namespace ellwynd::test
