// The connection between a simulated computer and the schools.
#pragma once

#include "app/courses/connector.h"
#include "school.h"

#include <coroutine>
#include <functional>
#include <set>

namespace ellwynd::simulation {

/// Holds requests until the simulation answers them.
class Network {
  public:
    /// Waits for an answer. `co_await` throws Cancelled or a CanvasError instead.
    class Request {
      public:
        Request(Network &network, std::int64_t courseID, std::stop_token stop)
            : network(network), courseID(courseID), stop(std::move(stop)) {}

        static bool await_ready() { return false; }
        void await_suspend(std::coroutine_handle<> handle) {
            waiter = handle;
            network.pending.push_back(this);
        }
        void await_resume() const {
            if (stop.stop_requested() || network.isClosed)
                throw Cancelled();
            if (!network.isOnline)
                throw CanvasError(CanvasError::Kind::offline);
            if (const auto failure = network.failures.find(courseID);
                failure != network.failures.end())
                throw CanvasError(failure->second);
        }

      private:
        friend class Network;
        Network &network;
        std::int64_t courseID;
        std::stop_token stop;
        std::coroutine_handle<> waiter;
    };

    /// @param courseID 0 for the course list.
    [[nodiscard]] Request request(std::int64_t courseID, std::stop_token stop) {
        ++requests;
        return {*this, courseID, std::move(stop)};
    }

    [[nodiscard]] bool isIdle() const { return pending.empty(); }
    [[nodiscard]] std::size_t waiting() const { return pending.size(); }
    /// Answers one of the waiting requests.
    void answer(unsigned draw) {
        const auto chosen = pending.begin() + std::ptrdiff_t(draw % pending.size());
        const std::coroutine_handle<> waiter = (*chosen)->waiter;
        pending.erase(chosen);
        waiter.resume();
    }
    /// Ends all requests, after their caller is gone.
    void close() {
        isClosed = true;
        while (!isIdle())
            answer(0);
        isClosed = false;
    }

    bool isOnline = true;
    /// By course; 0 is the course list.
    std::map<std::int64_t, CanvasError> failures;
    std::size_t requests = 0;

  private:
    std::vector<Request *> pending;
    bool isClosed = false;
};

/// A keyring of tokens by host.
struct Keyring {
    std::set<std::string> tokens;
    bool isLocked = false;
};

/// The schools by address.
using Schools = std::map<std::string, School>;

/// Opens a school instead of Canvas; otherwise as the program's connector.
class SimulatedConnector final : public Connector {
  public:
    /// The arguments must outlive this object and its sources.
    SimulatedConnector(
        UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session,
        const Schools &schools, Network &network, const Keyring &keyring, Clock now)
        : Connector(defaults, tokens, session, now),
          defaults(defaults),
          schools(schools),
          network(network),
          keyring(keyring),
          now(now) {}

    [[nodiscard]] QCoro::Task<std::shared_ptr<CanvasReading>>
    open(UnlockPrompt prompt, std::stop_token stop) const override;

  private:
    UserDefaults &defaults;
    const Schools &schools;
    Network &network;
    const Keyring &keyring;
    Clock now;
};

} // namespace ellwynd::simulation
