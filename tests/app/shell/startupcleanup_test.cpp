#include "app/shell/startupcleanup.h"
#include "support/logcapture.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> namesIn(const fs::path &folder) {
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

TEST(StartupCleanup, RemovesTheResidualFilesAndNothingElse) {
    const test::TemporaryFolder folder;
    const fs::path kept = folder.write("kept", "not to be followed to");
    for (const char *name : {"Cache.db", "Cache.db-wal", "Cache.dbx", "cache.db", "xCache.db"})
        folder.write(name, "rows");
    fs::create_symlink(kept, folder.path() / "Cache.db-shm");
    fs::create_directory(folder.path() / "Cache.db-folder");
    fs::create_directory(folder.path() / "fsCachedData");
    folder.write("fsCachedData/Cache.db", "rows");

    const test::LogCapture log;
    removeResidualCacheFiles(folder.path());
    // A folder that cannot be read is no error.
    for (const char *name : {"nothing", "kept"})
        EXPECT_NO_THROW(removeResidualCacheFiles(folder.path() / name)) << name;
    EXPECT_THAT(
        namesIn(folder.path()),
        UnorderedElementsAre("kept", "cache.db", "xCache.db", "Cache.db-folder", "fsCachedData"));
    EXPECT_THAT(namesIn(folder.path() / "fsCachedData"), ElementsAre("Cache.db"));
    EXPECT_THAT(
        log.lines(),
        UnorderedElementsAre(
            "settings: Removed residual URL cache file Cache.db",
            "settings: Removed residual URL cache file Cache.db-wal",
            "settings: Removed residual URL cache file Cache.dbx",
            "settings: Removed residual URL cache file Cache.db-shm"));
}

TEST(StartupCleanup, LogsWhatCannotBeRemoved) {
    const test::TemporaryFolder folder;
    folder.write("Cache.db", "rows");
    constexpr auto readOnly = fs::perms(0555);
    fs::permissions(folder.path(), readOnly);
    // Permissions do not restrict the superuser, as whom the tests may run.
    const uid_t user = ::geteuid();
    constexpr uid_t nobody = 65534;
    const test::LogCapture log;
    ASSERT_TRUE(user != 0 || ::seteuid(nobody) == 0);
    removeResidualCacheFiles(folder.path());
    ASSERT_TRUE(user != 0 || ::seteuid(user) == 0);
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_THAT(log.lines(), ElementsAre("settings: Couldn't remove Cache.db: Permission denied"));
}

} // namespace
} // namespace ellwynd
