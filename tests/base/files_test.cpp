#include "base/files.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace ellwynd {
namespace {

using test::TemporaryFolder;

mode_t modeOf(const std::filesystem::path &path) {
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
    // No temporary file is left.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(file.parent_path()), {}), 1);
}

TEST(Files, ReadRejectsLargeAndIrregularFiles) {
    const TemporaryFolder folder;
    const auto large = folder.write("large.json", std::string(std::size_t{2} << 20, ' '));
    EXPECT_THROW((void)files::read(large, std::size_t{1} << 20), FileError);
    EXPECT_THROW((void)files::read(folder.path(), 100), FileError);
    const auto pipe = folder.path() / "pipe.json";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THROW((void)files::read(pipe, 100), FileError);
}

TEST(Files, FailedReplaceKeepsTheOldFile) {
    const TemporaryFolder folder;
    const auto file = folder.write("memory.json", "old");
    // A folder cannot be replaced by a file.
    const auto blocked = folder.path() / "blocked";
    std::filesystem::create_directories(blocked / "inside");
    EXPECT_THROW(files::replace(blocked, "new"), FileError);
    EXPECT_THROW(files::replace(file / "below", "new"), FileError);
    EXPECT_EQ(folder.read("memory.json"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST(Files, SettingAsideKeepsTheBytes) {
    const TemporaryFolder folder;
    const auto file = folder.write("Memory.json", "broken");
    EXPECT_EQ(files::setAside(file, 1758700000).filename(), "Memory.unreadable-1758700000.json");
    EXPECT_EQ(folder.read("Memory.unreadable-1758700000.json"), "broken");
    EXPECT_THROW(files::setAside(file, 1758700000), FileError);
}

} // namespace
} // namespace ellwynd
