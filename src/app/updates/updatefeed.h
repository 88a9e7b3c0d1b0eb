// Where updates are heard of.
#pragma once

#include "app/updates/appcast.h"
#include "base/date.h"
#include "net/download.h"
#include "preferences/userdefaults.h"

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

/// What an appcast may cost: it is a short list.
inline constexpr DownloadLimits feedLimits{
    .inactivityTimeout = std::chrono::seconds(30),
    .totalTimeout = std::chrono::minutes(2),
    .maxBytes = std::size_t{1024} * 1024};

/// Reads an appcast over HTTPS. Nothing of the response is kept and no redirect is followed.
///
/// Lives on the main thread and must outlive the event loop.
class AppcastFeed final : public UpdateFeed {
  public:
    /// @param address of the feed; empty, or any that does not begin with "https://", is none.
    AppcastFeed(
        UserDefaults &defaults, std::string address, Clock now = systemNow,
        DownloadLimits limits = feedLimits);

    [[nodiscard]] bool mayCheck() const override;
    [[nodiscard]] bool checksAutomatically() const override;
    [[nodiscard]] std::optional<Date> lastCheck() const override;
    [[nodiscard]] QCoro::Task<std::optional<Update>> newest(bool counted) override;

  private:
    UserDefaults &defaults;
    std::string address;
    Clock now;
    DownloadLimits limits;
    Downloader downloader;
};

} // namespace ellwynd
