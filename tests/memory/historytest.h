// Fixtures for a store and its file.
#pragma once

#include "memory/rosterhistory.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd::test {

struct StoreTest : testing::Test {
    TemporaryFolder folder;
    LogCapture log;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    std::filesystem::path data = folder.path() / "data";
    std::filesystem::path file;

    explicit StoreTest(const char *fileName) : file(data / fileName) {}

    [[nodiscard]] std::string saved() const {
        return folder.read("data/" + file.filename().string());
    }
    void write(const std::string &bytes) const {
        std::filesystem::create_directories(data);
        folder.write("data/" + file.filename().string(), bytes);
    }
};

struct HistoryTest : StoreTest {
    HistoryTest() : StoreTest("RosterHistory.json") {}

    [[nodiscard]] RosterHistory open() { return {defaults, data, noonClock}; }
    [[nodiscard]] std::vector<RosterSnapshot> savedEntries() const {
        return historyEntries(saved());
    }
};

} // namespace ellwynd::test
