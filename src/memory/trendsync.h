// Each course's daily counts of flagged students, shared by all of the teacher's machines.
#pragma once

#include "base/date.h"
#include "platform/cloud/cloudkeyvaluestore.h"
#include "preferences/userdefaults.h"

#include <QObject>

#include <map>

namespace ellwynd {

/// Counts of flagged students by day key, "2026-09-03".
using DailyCounts = std::map<std::string, std::int64_t>;

/// Two weeks of counts for each course, under "Trend." and the course's id: one number for each
/// day, without students' names. Active while the preference "SyncSettingsViaICloud" is on and the
/// sample college is not shown; otherwise every operation does nothing. Used on the main thread.
class TrendSync : public QObject {
    Q_OBJECT

  public:
    explicit TrendSync(UserDefaults &defaults);
    ~TrendSync() override;

    /// Sets the shared store, which must outlive its use here; null for none.
    void setStore(CloudKeyValueStore *newStore);

    /// Starts to observe other machines' counts.
    void start();
    /// Shares, as soon as the store can be written, a course's count of flagged students for the
    /// day of `date`, and removes days more than two weeks before it.
    void publish(std::int64_t courseID, std::int64_t count, Date date);
    /// The course's shared counts except that of `today`, which this machine computes.
    [[nodiscard]] DailyCounts remoteCounts(std::int64_t courseID, Date today) const;

  Q_SIGNALS:
    /// Another machine changed a course's counts.
    void trendCountsDidSync();

  private:
    struct Published {
        std::int64_t count = 0;
        Date date;
    };

    [[nodiscard]] bool isActive() const;
    [[nodiscard]] DailyCounts counts(std::int64_t courseID) const;
    void storeDidChange(const CloudChange &change);
    void write();

    UserDefaults &defaults;
    CloudKeyValueStore *store = nullptr;
    /// Counts that are not known to be in the store, by course and day key. They are merged with
    /// what the store holds when they are written.
    std::map<std::int64_t, std::map<std::string, Published>> published;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
