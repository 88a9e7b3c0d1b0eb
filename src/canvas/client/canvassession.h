// The one HTTP session of the process.
#pragma once

#include "canvas/client/classify.h"

#include <QCoro/QCoroTask>
#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <coroutine>
#include <deque>
#include <functional>
#include <memory>
#include <stop_token>

namespace ellwynd {

/// The caller has given up; nothing is wrong with Canvas.
class Cancelled : public std::exception {
  public:
    [[nodiscard]] const char *what() const noexcept override { return "cancelled"; }
};

/// An answer, whatever its status.
struct HTTPAnswer {
    /// 0 when the answer was not HTTP.
    int status = 0;
    std::string body;
    /// The "Link" header, several of them joined by ", "; empty without one.
    std::string link;
    /// More than the session takes; `body` is then cut.
    bool tooLarge = false;
};

/// Lets a few requests in at a time. Whoever waits is let in in order of arrival.
class RequestGate {
  public:
    /// A place among the requests in flight, given back when it goes.
    class Place {
      public:
        explicit Place(RequestGate &owner) : gate(&owner) {}
        Place(Place &&other) noexcept : gate(std::exchange(other.gate, nullptr)) {}
        Place &operator=(Place &&) = delete;
        ~Place() {
            if (gate != nullptr)
                gate->leave();
        }

      private:
        RequestGate *gate;
    };

    struct Entering {
        RequestGate &gate;
        bool await_ready() { return gate.tryEnter(); }
        void await_suspend(std::coroutine_handle<> waiter) { gate.waiting.push_back(waiter); }
        Place await_resume() { return Place(gate); }
    };

    explicit RequestGate(int most) : limit(most) {}

    /// `co_await`ed, a place.
    [[nodiscard]] Entering enter() { return {*this}; }
    void setLimit(int most);
    [[nodiscard]] int inFlight() const { return active; }

  private:
    bool tryEnter();
    void leave();
    void admit();

    int limit;
    int active = 0;
    std::deque<std::coroutine_handle<>> waiting;
};

/// Sends requests. It keeps nothing of any answer, follows no redirect and trusts no certificate
/// that the system does not. At most six requests are in flight for the whole process, and one at a
/// time while Canvas says that its patience runs low.
///
/// Lives on the main thread and outlives the event loop.
class CanvasSession {
  public:
    /// Waits, or throws Cancelled when it is told to stop.
    using Wait = std::function<QCoro::Task<>(std::chrono::milliseconds, std::stop_token)>;

    struct Limits {
        /// Silence on the wire, after which a request has timed out.
        std::chrono::milliseconds silence = std::chrono::seconds(60);
        /// A request in all, however much of it trickles in.
        std::chrono::milliseconds whole = std::chrono::minutes(10);
        std::size_t bodyBytes = 64UL * 1024 * 1024;
        /// How retries wait; tests that look at the waits need not sit them out.
        Wait wait;
    };

    CanvasSession();
    explicit CanvasSession(Limits limits);
    ~CanvasSession();

    /// @throws TransportFailure when no answer came, Cancelled when told to stop.
    [[nodiscard]] QCoro::Task<HTTPAnswer> get(QUrl url, std::string token, std::stop_token stop);

    [[nodiscard]] QCoro::Task<> wait(std::chrono::milliseconds duration, std::stop_token stop) {
        return limits.wait(duration, std::move(stop));
    }
    [[nodiscard]] const RequestGate &requestGate() const { return gate; }

  private:
    Limits limits;
    RequestGate gate;
    /// Made on first use.
    std::unique_ptr<QNetworkAccessManager> manager;
};

} // namespace ellwynd
