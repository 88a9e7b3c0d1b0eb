// The history of a test, and its file.
#pragma once

#include "memory/rosterhistory.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd::test {

constexpr auto historyFileName = "RosterHistory.json";

struct HistoryTest : testing::Test {
    TemporaryFolder folder;
    LogCapture log;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};

    [[nodiscard]] std::filesystem::path data() const { return folder.path() / "data"; }
    [[nodiscard]] std::string saved() const {
        return folder.read(std::string("data/") + historyFileName);
    }
    void write(const std::string &bytes) const {
        std::filesystem::create_directories(data());
        folder.write(std::string("data/") + historyFileName, bytes);
    }
    [[nodiscard]] RosterHistory open() { return {defaults, data(), noonClock}; }
    [[nodiscard]] std::size_t filesSetAside() const {
        return std::size_t(std::ranges::count_if(
            std::filesystem::directory_iterator(data()), [](const auto &file) {
                return file.path().filename().string().find("unreadable") != std::string::npos;
            }));
    }
};

} // namespace ellwynd::test
