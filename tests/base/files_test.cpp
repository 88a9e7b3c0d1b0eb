#include "base/files.h"
#include "support/resourcelimit.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <unistd.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

using test::TemporaryFolder;
using testing::UnorderedElementsAre;

std::vector<std::string> namesIn(const fs::path &folder) {
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

mode_t modeOf(const fs::path &path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0);
    return info.st_mode & 0777U;
}

TEST(Files, ReplaceRoundTripsPrivately) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "a" / "b" / "memory.json";
    EXPECT_EQ(files::read(file, 100), std::nullopt);
    files::replace(file, "first");
    files::replace(file, std::string("se\0cond", 7));
    EXPECT_EQ(files::read(file, 100), std::string("se\0cond", 7));
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(file.parent_path()), 0700U);
    EXPECT_THAT(namesIn(file.parent_path()), UnorderedElementsAre("memory.json"));
}

TEST(Files, TellUnavailableFilesFromUnreadableOnes) {
    const TemporaryFolder folder;
    const auto file = folder.write("memory.json", "bytes");
    fs::create_symlink("loop", folder.path() / "loop");
    const auto pipe = folder.path() / "pipe.json";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto outcome = [](const fs::path &path) {
        try {
            return files::read(path, 3) ? "read" : "absent";
        } catch (const FileUnavailable &) {
            return "unavailable";
        } catch (const FileError &) {
            return "unreadable";
        }
    };
    for (const auto &[path, expected] :
         {std::pair{folder.path() / "loop", "unavailable"},
          {folder.path() / "loop" / "memory.json", "unavailable"},
          {folder.path() / std::string(300, 'x'), "unavailable"},
          {file, "unreadable"}, // too large
          {folder.path(), "unreadable"},
          {pipe, "unreadable"},
          {file / "below", "absent"},
          {folder.path() / "none", "absent"}})
        EXPECT_STREQ(outcome(path), expected) << path;
    {
        const test::ResourceLimit noDescriptor(RLIMIT_NOFILE, 0);
        EXPECT_STREQ(outcome(file), "unavailable");
    }
    // Permissions do not restrict the superuser, as whom the tests may run.
    const uid_t user = ::geteuid();
    constexpr uid_t nobody = 65534;
    fs::permissions(folder.path(), fs::perms::none);
    ASSERT_TRUE(user != 0 || ::seteuid(nobody) == 0);
    const std::string hidden = outcome(file);
    const bool unknown = files::stamp(file).size == files::Stamp::unknown;
    EXPECT_THROW(files::replace(file, "new"), FileError);
    EXPECT_THROW(files::remove(file), FileError);
    EXPECT_NO_THROW(files::removeLeftovers(file));
    EXPECT_FALSE(files::hasSetAside(file));
    ASSERT_TRUE(user != 0 || ::seteuid(user) == 0);
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(hidden, "unavailable");
    EXPECT_TRUE(unknown);
}

TEST(Files, EveryNameThatAFileSystemHoldsCanBeReplaced) {
    const TemporaryFolder folder;
    std::string accents;
    while (accents.size() < 254)
        accents += "é";
    for (const std::string &name :
         {std::string("x"), std::string(131, 'a'), std::string(132, 'b'), std::string(255, 'c'),
          accents, "x" + accents}) {
        const auto file = folder.path() / name;
        files::replace(file, "first");
        files::replaceForTeacher(file, name);
        EXPECT_EQ(folder.read(name), name);
        const files::Lock lock(file);
        EXPECT_EQ(namesIn(folder.path()).size(), 2U) << "the file and its lock";
        fs::remove_all(folder.path());
        fs::create_directory(folder.path());
    }
}

TEST(Files, ReplacingRemovesTheLeftoversOfKilledWriters) {
    const TemporaryFolder folder;
    const auto file = folder.write("a.csv", "old");
    for (const char *name :
         {".a.csv.new-abc123", ".a.csv.new-abc1234", ".a.csv.new-b.new-abc123", ".b.csv.new-abc123",
          "a.csv.new-abc123"})
        folder.write(name, "of a writer");
    fs::create_symlink(file, folder.path() / ".a.csv.new-link12");
    {
        const files::Replacement underWay(file, "of this process");
        const auto before = namesIn(folder.path()).size();
        files::replaceForTeacher(file, "new");
        EXPECT_EQ(namesIn(folder.path()).size(), before) << "a file being written is kept";
    }
    EXPECT_THAT(
        namesIn(folder.path()),
        UnorderedElementsAre(
            "a.csv", ".a.csv.new-abc1234", ".a.csv.new-b.new-abc123", ".b.csv.new-abc123",
            "a.csv.new-abc123", ".a.csv.new-link12"));
}

TEST(Files, AFileOfTheTeachersKeepsItsAccess) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "roster.csv";
    files::replaceForTeacher(file, "new");
    EXPECT_EQ(modeOf(file), 0600U);
    constexpr uid_t nobody = 65534;
    const uid_t owner = ::geteuid() == 0 ? nobody : ::geteuid();
    ASSERT_EQ(::chown(file.c_str(), owner, gid_t(-1)), 0);
    for (const mode_t mode : {0644U, 0660U, 0400U}) {
        ASSERT_EQ(::chmod(file.c_str(), mode), 0);
        files::replaceForTeacher(file, "newer");
        EXPECT_EQ(modeOf(file), mode);
        struct stat info {};
        ASSERT_EQ(::stat(file.c_str(), &info), 0);
        EXPECT_EQ(info.st_uid, owner);
    }
    files::replace(file, "private");
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST(Files, AFileOfTheTeachersMayBeASymbolicLink) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "real");
    const auto link = folder.path() / "link.csv";
    fs::create_symlink("middle.csv", link);
    fs::create_symlink(fs::path("real") / "roster.csv", folder.path() / "middle.csv");
    for (const char *text : {"to a file that does not exist yet", "to one that does"}) {
        files::replaceForTeacher(link, text);
        EXPECT_EQ(folder.read("real/roster.csv"), text);
        EXPECT_TRUE(fs::is_symlink(link));
    }
    fs::create_symlink("loop.csv", folder.path() / "loop.csv");
    EXPECT_THROW(files::replaceForTeacher(folder.path() / "loop.csv", "new"), FileError);
    EXPECT_TRUE(fs::is_symlink(folder.path() / "loop.csv"));
    const auto pipe = folder.path() / "pipe.csv";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THROW(files::replaceForTeacher(pipe, "new"), FileError);
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(Files, FailedReplaceKeepsTheOldFile) {
    const TemporaryFolder folder;
    const auto file = folder.write("memory.json", "old");
    // A folder cannot be replaced by a file.
    const auto blocked = folder.path() / "blocked";
    fs::create_directories(blocked / "inside");
    EXPECT_THROW(files::replace(blocked, "new"), FileError);
    EXPECT_THROW(files::replace(file / "below", "new"), FileError);
    EXPECT_EQ(folder.read("memory.json"), "old");
    EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("memory.json", "blocked"));
}

TEST(Files, CopiesSetAsideAreRemovedByAge) {
    const TemporaryFolder folder;
    const auto file = folder.write("Memory.json", "good");
    const std::vector<std::string> others{
        "Memory.json", "Memory.unreadable-.json", "Memory.unreadable-9x.json",
        "Other.unreadable-99.json", "Memory.unreadable-99.txt"};
    for (const std::string &name : others)
        folder.write(name, "other");
    for (const char *name : {"Memory.unreadable-99.json", "Memory.unreadable-100.json"})
        folder.write(name, "broken");
    EXPECT_TRUE(files::hasSetAside(file));
    files::removeSetAside(file, 100);
    auto kept = others;
    kept.emplace_back("Memory.unreadable-100.json");
    EXPECT_THAT(namesIn(folder.path()), testing::UnorderedElementsAreArray(kept));
    files::removeSetAside(file);
    EXPECT_THAT(namesIn(folder.path()), testing::UnorderedElementsAreArray(others));
    EXPECT_FALSE(files::hasSetAside(file));
    EXPECT_FALSE(files::hasSetAside(folder.path() / "none" / "Memory.json"));
    EXPECT_THROW(files::setAside(folder.path() / "none.json", 1), FileError);
}

} // namespace
} // namespace ellwynd
