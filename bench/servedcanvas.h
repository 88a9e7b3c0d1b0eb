// A fake Canvas in a separate process, so that benchmarks measure only the client.
#pragma once

#include <QProcess>

#include <chrono>
#include <string>

namespace ellwynd::bench {

/// What the server serves, and its latency.
struct ServedShape {
    std::int64_t courses = 1;
    std::int64_t students = 120;
    std::int64_t assignments = 40;
    std::chrono::milliseconds latency{50};
    /// Students of each course who are not in the course before it.
    std::int64_t newStudents = 0;
    /// How long the server runs.
    std::chrono::seconds lifetime{600};

    /// The lower bound of the time to read all courses: each page takes the latency and nothing
    /// else takes time, the pages of a list are sequential, and six requests are in flight.
    [[nodiscard]] std::chrono::milliseconds bound() const;
};

/// Runs ellwynd-fake-canvas and trusts its certificate. Course ids start at 1.
/// @throws std::runtime_error when it does not start
class ServedCanvas {
  public:
    explicit ServedCanvas(const ServedShape &shape);
    ~ServedCanvas();
    ServedCanvas(const ServedCanvas &) = delete;
    ServedCanvas &operator=(const ServedCanvas &) = delete;

    [[nodiscard]] const std::string &address() const { return base; }
    /// The token that the server accepts.
    std::string token = "secret-token";

  private:
    QProcess server;
    std::string base;
};

/// The resident memory of this process now, in bytes.
[[nodiscard]] double residentMemory();

/// The peak resident memory of this process, in bytes.
[[nodiscard]] double peakResidentMemory();

} // namespace ellwynd::bench
