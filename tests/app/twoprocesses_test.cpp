// Two processes change the stores and the preferences at once.
#include "app/shell/stores.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <functional>
#include <unistd.h>

namespace ellwynd {
namespace {

/// Changes something in a folder; numbers differ between the processes.
using Change = std::function<void(UserDefaults &, Stores &, int number)>;

constexpr int count = 100;

std::filesystem::path preferencesIn(const test::TemporaryFolder &folder) {
    return folder.path() / "Preferences.json";
}

/// Two processes make a change a hundred times each.
void changeInTwoProcesses(const test::TemporaryFolder &folder, const Change &change) {
    std::array<int, 2> begin{};
    ASSERT_EQ(::pipe(begin.data()), 0);
    std::array<pid_t, 2> children{};
    for (std::size_t process = 0; process < children.size(); ++process) {
        children[process] = ::fork();
        ASSERT_GE(children[process], 0);
        if (children[process] > 0)
            continue;
        ::close(begin[1]);
        char ignored = 0;
        // Both begin when the pipe is closed.
        while (::read(begin[0], &ignored, 1) > 0) {
        }
        UserDefaults defaults(preferencesIn(folder), {});
        Stores stores(defaults, folder.path(), test::noonClock);
        for (int i = 0; i < count; ++i)
            change(defaults, stores, int(process) * count + i);
        ::_exit(0);
    }
    ::close(begin[0]);
    ::close(begin[1]);
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
}

TEST(TwoProcesses, LoseNoChangeOfAnother) {
    const test::LogCapture log;
    const test::TemporaryFolder folder;
    const auto icon = [](int number) { return "Course." + std::to_string(number) + ".Icon"; };
    const std::vector<RiskRow> visit{test::row(1, "Watch")};
    const Change changes[] = {
        [&](UserDefaults &defaults, Stores &, int number) {
            defaults.set(icon(number), std::string());
        },
        [&](UserDefaults &, Stores &stores, int number) {
            stores.history.record(visit, number, test::noon);
        },
        [](UserDefaults &, Stores &stores, int number) {
            stores.contacts.noteContact(7, number, test::noon);
        },
        [](UserDefaults &, Stores &stores, int) { (void)stores.templates.addUntitled(); }};
    for (const Change &change : changes)
        changeInTwoProcesses(folder, change);
    UserDefaults defaults(preferencesIn(folder), {});
    const Stores stores(defaults, folder.path(), test::noonClock);
    EXPECT_EQ(defaults.persistentDomain().size(), 2U * count);
    EXPECT_EQ(stores.history.entries().size(), 2U * count);
    EXPECT_EQ(stores.contacts.records().size(), 2U * count);
    EXPECT_EQ(stores.templates.templates().size(), 3 + 2U * count);
}

} // namespace
} // namespace ellwynd
