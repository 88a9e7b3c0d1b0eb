// The source of information about updates.
#pragma once

#include "app/updates/appcast.h"
#include "base/date.h"
#include "net/download.h"
#include "preferences/userdefaults.h"

namespace ellwynd {

/// A source that lists the available updates.
class UpdateFeed {
  public:
    virtual ~UpdateFeed() = default;

    /// Whether updates can be checked for at all.
    [[nodiscard]] virtual bool mayCheck() const = 0;
    /// Whether the teacher wants automatic checks.
    [[nodiscard]] virtual bool checksAutomatically() const = 0;
    /// When the last check started, whatever its result; absent before the first.
    [[nodiscard]] virtual std::optional<Date> lastCheck() const = 0;
    /// The newest update, even if it is older than the running program; absent if none is offered.
    /// @param counted marks the request as the first of its day.
    /// @throws UpdateError
    [[nodiscard]] virtual QCoro::Task<std::optional<Update>> newest(bool counted) = 0;
};

/// The limits of an appcast, which is a short list.
inline constexpr DownloadLimits feedLimits{
    .inactivityTimeout = std::chrono::seconds(30),
    .totalTimeout = std::chrono::minutes(2),
    .maxBytes = std::size_t{1024} * 1024};

/// Reads an appcast over HTTPS, without a cache and without following redirects.
///
/// Used on the main thread. Must outlive the event loop.
class AppcastFeed final : public UpdateFeed {
  public:
    /// @param defaults must outlive this object.
    /// @param address the address of the feed; unless it is a valid https URL, nothing is checked.
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
