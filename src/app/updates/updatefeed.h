// Where updates are heard of.
#pragma once

#include "app/updates/appcast.h"
#include "base/date.h"
#include "preferences/userdefaults.h"

#include <QCoro/QCoroTask>
#include <QNetworkAccessManager>

#include <chrono>

namespace ellwynd {

/// What the program asks of whoever knows about updates.
class UpdateFeed {
  public:
    virtual ~UpdateFeed() = default;

    /// Whether there is anything to ask.
    [[nodiscard]] virtual bool mayCheck() const = 0;
    /// Whether the teacher wants to be told without asking.
    [[nodiscard]] virtual bool checksAutomatically() const = 0;
    /// When a check last began, however it ended.
    [[nodiscard]] virtual std::optional<Date> lastCheck() const = 0;
    /// What is newest, older than the running program or not; absent when nothing is offered.
    /// @param counted marks the request as the first of its day.
    /// @throws UpdateError
    [[nodiscard]] virtual QCoro::Task<std::optional<Update>> newest(bool counted) = 0;
};

/// Reads an appcast over HTTPS. Nothing of the answer is kept, no redirect is followed, no
/// certificate is trusted that the system does not trust.
///
/// Lives on the main thread and outlives the event loop.
class AppcastFeed final : public UpdateFeed {
  public:
    struct Limits {
        /// Silence on the wire, after which a request has failed.
        std::chrono::milliseconds silence = std::chrono::seconds(30);
        /// A request in all.
        std::chrono::milliseconds whole = std::chrono::minutes(2);
        std::size_t bytes = 1024UL * 1024;
    };

    /// @param address of the feed; empty, or any that does not begin with "https://", is none.
    AppcastFeed(UserDefaults &defaults, std::string address, Clock clock = systemNow);
    AppcastFeed(UserDefaults &defaults, std::string address, Clock clock, Limits limits);

    [[nodiscard]] bool mayCheck() const override;
    [[nodiscard]] bool checksAutomatically() const override;
    [[nodiscard]] std::optional<Date> lastCheck() const override;
    [[nodiscard]] QCoro::Task<std::optional<Update>> newest(bool counted) override;

  private:
    UserDefaults &defaults;
    std::string address;
    Clock now;
    Limits limits;
    /// Made on first use.
    std::unique_ptr<QNetworkAccessManager> manager;
};

} // namespace ellwynd
