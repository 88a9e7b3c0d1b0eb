// What a command runs in, and the ways in which one can end.
#pragma once

#include "app/rosterloader.h"

#include <iosfwd>
#include <memory>
#include <stdexcept>

namespace ellwynd::cli {

/// How a run ends, for scripts.
enum ExitStatus : int {
    done = 0,
    failed = 1,
    wrongUsage = 2,
    notConnected = 3,
};

/// The words of a command line make no sense; the message says which.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work cannot be done, for a reason that is one line.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// There is no Canvas address or no token for it.
class NotConnected : public std::runtime_error {
  public:
    NotConnected() : std::runtime_error("Not connected") {}
};

/// Streams, preferences and clock of one run.
struct Session {
    std::ostream &out;
    std::ostream &err;
    UserDefaults &defaults;
    Clock now = systemNow;

    /// The data source. @throws NotConnected
    [[nodiscard]] std::shared_ptr<CanvasReading> connect() const;
};

/// The course list as fetched.
[[nodiscard]] std::vector<Course> fetchCourses(CanvasReading &source);

/// The course of that id. @throws Failure when the list holds none.
[[nodiscard]] Course findCourse(const std::vector<Course> &courses, std::int64_t id);

/// Reads an id from a word. @throws UsageError
[[nodiscard]] std::int64_t parseID(const std::string &word, const char *what);

} // namespace ellwynd::cli
