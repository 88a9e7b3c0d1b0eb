// Saves of the history in the background.
#include "historytest.h"
#include "support/latework.h"
#include "support/until.h"

namespace ellwynd {
namespace {

using std::chrono::days;
using std::chrono::hours;
using test::entry;
using test::HistoryTest;
using test::noon;
using test::row;
using testing::ElementsAre;

/// A history that works in the background.
struct BackgroundTest : HistoryTest {
    test::LateWork work;
    int signalled = 0;

    [[nodiscard]] std::unique_ptr<RosterHistory> open(StartWork startWork) {
        auto history =
            std::make_unique<RosterHistory>(defaults, data, test::noonClock, std::move(startWork));
        QObject::connect(history.get(), &RosterHistory::historyDidChange, history.get(), [this] {
            ++signalled;
        });
        return history;
    }
    /// Does the late work, and what follows it.
    void finish() {
        for (; work.isPending(); QCoreApplication::processEvents())
            work.finish();
    }
};

TEST_F(BackgroundTest, IsReadAfterTheConstruction) {
    HistoryTest::open().record({row(1, "Watch")}, 7, noon - days(1));
    const auto history = open(work.starter());
    EXPECT_TRUE(history->entries().empty());
    // A visit before the file was read.
    history->record({row(1, "OK")}, 7, noon);
    EXPECT_THAT(history->entries(), ElementsAre(entry(7, 1, noon, "OK")));
    EXPECT_TRUE(history->isSaved());
    finish();
    EXPECT_EQ(signalled, 2) << "recorded, read";
    EXPECT_THAT(
        history->entries(),
        ElementsAre(entry(7, 1, noon - days(1), "Watch"), entry(7, 1, noon, "OK")));
    EXPECT_EQ(history->entries(), savedEntries());
}

TEST_F(BackgroundTest, KeepsTheVisitOfADayThatWasNotReadYet) {
    for (const EntriesOfDay earlier : {EntriesOfDay::kept, EntriesOfDay::replaced}) {
        HistoryTest::open().record({row(1, "Watch")}, 7, noon - hours(1));
        const auto history = open(work.starter());
        history->record({row(1, "OK")}, 7, noon, earlier);
        finish();
        const bool isKept = earlier == EntriesOfDay::kept;
        EXPECT_THAT(
            history->entries(),
            ElementsAre(isKept ? entry(7, 1, noon - hours(1), "Watch") : entry(7, 1, noon, "OK")));
    }
}

TEST_F(BackgroundTest, KeepsWhatAnotherProcessSaved) {
    const auto history = open(startThread);
    RosterHistory commandLine = HistoryTest::open();
    for (std::int64_t course = 1; course <= 20; ++course) {
        history->record({row(1, "Watch")}, course, noon);
        commandLine.record({row(2, "OK")}, 100 + course, noon);
    }
    const auto hasSaved = [&](std::size_t count) {
        return test::until(
            [&] { return std::filesystem::exists(file) && savedEntries().size() == count; });
    };
    EXPECT_TRUE(hasSaved(40));
    commandLine.deleteAll();
    history->record({row(3, "OK")}, 200, noon);
    EXPECT_TRUE(hasSaved(1)) << "entries deleted by another process must not come back";
    EXPECT_TRUE(test::until([&] { return history->entries() == savedEntries(); }));
    write("broken");
    history->record({row(3, "OK")}, 201, noon);
    EXPECT_TRUE(test::until([&] { return files::hasSetAside(file); }));
    EXPECT_TRUE(hasSaved(2)) << "a damaged file does not clear what is in memory";
}

TEST_F(BackgroundTest, ReportsAFailureAndSavesLater) {
    folder.write("data", "in the way");
    const auto history = open(work.starter());
    history->record({row(1, "Watch")}, 7, noon);
    finish();
    EXPECT_FALSE(history->isSaved());
    EXPECT_EQ(signalled, 2) << "recorded, failed";
    std::filesystem::remove(data);
    history->saveUnsaved();
    finish();
    EXPECT_EQ(signalled, 3);
    EXPECT_TRUE(history->isSaved());
    EXPECT_THAT(savedEntries(), ElementsAre(entry(7, 1, noon, "Watch")));
}

TEST_F(BackgroundTest, ADeletionIsNotUndoneByASave) {
    const auto history = open(startThread);
    for (std::int64_t course = 1; course <= 20; ++course)
        history->record({row(1, "Watch")}, course, noon);
    EXPECT_EQ(history->deleteAll().size(), 20U);
    EXPECT_FALSE(std::filesystem::exists(file));
    QCoreApplication::processEvents();
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(history->entries().empty());
}

TEST_F(BackgroundTest, TheEndOfASaveThatWasWaitedForIsNotThatOfALaterOne) {
    const auto history = open(work.starter());
    history->record({row(1, "Watch")}, 7, noon);
    work.finish();
    history->deleteAll();
    history->record({row(2, "OK")}, 8, noon);
    QCoreApplication::processEvents();
    EXPECT_TRUE(work.isPending()) << "the event loop waited for the second save";
    finish();
    EXPECT_THAT(savedEntries(), ElementsAre(entry(8, 2, noon, "OK")));
}

TEST_F(BackgroundTest, ADeletionBeforeTheFileWasReadCanBeUndone) {
    HistoryTest::open().record({row(1, "Watch")}, 7, noon);
    const auto history = open(work.starter());
    const HistoryVisits deleted = history->deleteAll();
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(history->restore(deleted));
    EXPECT_THAT(history->entries(), ElementsAre(entry(7, 1, noon, "Watch")));
}

TEST_F(BackgroundTest, TheEndWaitsForASave) {
    open(startThread)->record({row(1, "Watch")}, 7, noon);
    EXPECT_THAT(savedEntries(), ElementsAre(entry(7, 1, noon, "Watch")));
}

} // namespace
} // namespace ellwynd
