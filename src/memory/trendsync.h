// Each course's flagged students per day, shared by all of the teacher's machines.
#pragma once

#include "base/date.h"
#include "platform/cloud/cloudkeyvaluestore.h"
#include "preferences/userdefaults.h"

#include <QObject>

#include <map>

namespace ellwynd {

/// Flagged students by day key, "2026-09-03".
using DailyCounts = std::map<std::string, std::int64_t>;

/// Two weeks of counts per course under "Trend." and the course's id: one number a day, naming no
/// student. Works while "SyncSettingsViaICloud" is on and the sample college is not shown;
/// otherwise every operation does nothing. Lives on the main thread.
class TrendSync : public QObject {
    Q_OBJECT

  public:
    explicit TrendSync(UserDefaults &defaults);
    ~TrendSync() override;

    /// The store to share through, which must outlive its use here; null for none.
    void setStore(CloudKeyValueStore *store);

    /// Begins to listen for other machines' counts.
    void start();
    /// Shares a course's flagged students for the day of `date`, and drops days more than two weeks
    /// before it.
    void publish(std::int64_t courseID, std::int64_t count, Date date);
    /// The course's shared days, without that of `today`, whose number is this machine's own.
    [[nodiscard]] DailyCounts remoteCounts(std::int64_t courseID, Date today) const;

  Q_SIGNALS:
    /// Another machine changed a course's counts.
    void trendCountsDidSync();

  private:
    [[nodiscard]] bool isActive() const;
    [[nodiscard]] DailyCounts counts(std::int64_t courseID) const;

    UserDefaults &defaults;
    CloudKeyValueStore *store = nullptr;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
