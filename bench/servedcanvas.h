// A fake Canvas in a process of its own, so that the figures of a benchmark are the client's alone.
#pragma once

#include <QProcess>

#include <chrono>
#include <string>

namespace ellwynd::bench {

/// What is served, and how slowly.
struct ServedShape {
    std::int64_t courses = 1;
    std::int64_t students = 120;
    std::int64_t assignments = 40;
    std::chrono::milliseconds latency{50};

    /// The least time in which every record of every course can be read, when each page takes the
    /// latency and nothing else takes any: the pages of one list follow each other, and six
    /// requests are in flight.
    [[nodiscard]] std::chrono::milliseconds bound() const;
};

/// Runs ellwynd-fake-canvas and trusts it. Throws std::runtime_error when it does not start.
/// Courses have the ids from 1 on.
class ServedCanvas {
  public:
    explicit ServedCanvas(const ServedShape &shape);
    ~ServedCanvas();
    ServedCanvas(const ServedCanvas &) = delete;
    ServedCanvas &operator=(const ServedCanvas &) = delete;

    [[nodiscard]] const std::string &address() const { return base; }
    /// The one that it accepts.
    std::string token = "secret-token";

  private:
    QProcess server;
    std::string base;
};

/// The most memory that this process has had resident so far, in bytes.
[[nodiscard]] double peakResidentMemory();

} // namespace ellwynd::bench
