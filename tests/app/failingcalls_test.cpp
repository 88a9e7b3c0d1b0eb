// Every file-system call of the stores fails in turn.
#include "app/sync/settingssync.h"
#include "base/files.h"
#include "memory/contactlog.h"
#include "memory/historyfile.h"
#include "memory/rosterhistory.h"
#include "outputs/messages/templatestore.h"
#include "outputs/snapshot/snapshotfiles.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"
#include "support/failingcalls.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/snapshots.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cerrno>
#include <iostream>
#include <unistd.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

using std::chrono::days;
using test::entry;
using test::noon;
using test::noonClock;
using test::row;

/// An operation on files.
struct Operation {
    /// The operation whose calls fail. Only an export may throw, a FileError.
    std::function<void()> run;
    /// Whether memory holds what was done, whatever failed.
    std::function<bool()> isInMemory = [] { return true; };
    /// The next operation, without faults. Afterwards the files are as without any fault.
    std::function<void()> next = run;
};

/// Prepares the files in a folder, and returns the operation on them.
using Preparation = std::function<Operation(const fs::path &)>;

std::ptrdiff_t openDescriptors() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), {});
}

void write(const fs::path &file, std::string_view bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

/// One of the stores, with what it depends on.
template<class Store>
struct Opened {
    explicit Opened(const fs::path &folder)
        : defaults(folder / "Preferences.json", {}), store(defaults, folder, noonClock) {}
    UserDefaults defaults;
    Store store;
};

const std::vector<RiskRow> visit{row(1, "Watch")};
const MessageTemplate added{
    .id = "00000000-0000-0000-0000-00000000000A",
    .name = "New",
    .createdAt = noon,
    .updatedAt = noon};

void change(Opened<RosterHistory> &&opened, std::int64_t course, Date date) {
    opened.store.record(visit, course, date);
}
void change(Opened<ContactLog> &&opened, std::int64_t course, Date date) {
    opened.store.noteContact(course, 1, date);
}

/// An open store whose file another process has replaced since.
template<class Store>
std::shared_ptr<Opened<Store>> openedBeforeAChange(const fs::path &folder) {
    change(Opened<Store>(folder), 6, noon - days(2));
    auto opened = std::make_shared<Opened<Store>>(folder);
    change(Opened<Store>(folder), 8, noon - days(1));
    return opened;
}

Operation recordVisit(const fs::path &folder) {
    const auto opened = openedBeforeAChange<RosterHistory>(folder);
    return {
        .run = [=] { opened->store.record(visit, 7, noon); },
        .isInMemory = [=] { return opened->store.entries(7, 1).size() == 1; },
        .next = [=] { opened->store.record(visit, 5, noon); }};
}

Operation recordFirstVisit(const fs::path &folder) {
    const auto opened = std::make_shared<Opened<RosterHistory>>(folder / "new" / "Ellwynd");
    return {
        .run = [=] { opened->store.record(visit, 7, noon); },
        .isInMemory = [=] { return opened->store.entries().size() == 1; },
        .next = [=] { opened->store.record(visit, 5, noon); }};
}

Operation deleteHistory(const fs::path &folder) {
    const auto opened = openedBeforeAChange<RosterHistory>(folder);
    write(folder / "RosterHistory.unreadable-1790251200.json", "old");
    return {
        .run = [=] { opened->store.deleteAll(); },
        .isInMemory = [=] { return opened->store.entries().empty(); }};
}

/// Expired entries are removed when the file is read.
Operation loadHistory(const fs::path &folder) {
    write(
        folder / "RosterHistory.json",
        test::historyText(
            {entry(7, 1, noon - days(400), "OK"), entry(7, 1, noon - days(1), "OK")}));
    write(folder / "RosterHistory.unreadable-1690251200.json", "expired");
    const auto opened = std::make_shared<std::optional<Opened<RosterHistory>>>();
    return {
        .run = [=] { opened->emplace(folder); },
        .next =
            [=] {
                (*opened)->store.record(visit, 7, noon);
                Opened<RosterHistory>{folder};
            }};
}

/// A file that is not valid is set aside.
Operation setHistoryAside(const fs::path &folder) {
    Operation load = loadHistory(folder);
    write(folder / "RosterHistory.json", "[broken");
    return load;
}

Operation noteContacts(const fs::path &folder) {
    const auto opened = openedBeforeAChange<ContactLog>(folder);
    const std::vector<std::int64_t> students{1, 2};
    return {
        .run = [=] { opened->store.noteContacts(7, students, noon); },
        .isInMemory = [=] { return opened->store.lastContact(7, 2).has_value(); },
        .next = [=] { opened->store.noteContact(5, 1, noon); }};
}

Operation switchContactsOff(const fs::path &folder) {
    const auto opened = openedBeforeAChange<ContactLog>(folder);
    return {
        .run = [=] { opened->defaults.set(preferences::rememberContacts, false); },
        .isInMemory = [=] { return opened->store.records().empty(); },
        .next =
            [=] {
                opened->defaults.update({});
                opened->store.deleteAll();
            }};
}

Operation addTemplate(const fs::path &folder) {
    write(folder / "MessageTemplates.json", "[]");
    const auto store = std::make_shared<TemplateStore>(folder, noonClock);
    MessageTemplate theirs = added;
    theirs.id.back() = 'B';
    TemplateStore(folder, noonClock).add(theirs);
    MessageTemplate next = added;
    next.id.back() = 'C';
    return {
        .run = [=] { store->add(added); },
        .isInMemory = [=] { return store->find(added.id) != nullptr; },
        .next = [=] { store->add(next); }};
}

Operation loadTemplates(const fs::path &folder) {
    write(folder / "MessageTemplates.json", "[]");
    const auto store = std::make_shared<std::optional<TemplateStore>>();
    return {
        .run = [=] { store->emplace(folder, noonClock); },
        .next = [=] { TemplateStore(folder, noonClock).add(added); }};
}

Operation setPreferences(const fs::path &folder) {
    const fs::path file = folder / "new" / "Preferences.json";
    UserDefaults(file, {}).update({{"TextScale", 1.25}, {"SidebarTermLimit", std::int64_t{3}}});
    const auto defaults = std::make_shared<UserDefaults>(file, PreferenceMap());
    UserDefaults(file, {}).set("DefaultPassingScore", 70.0);
    const PreferenceChanges changes{{"TextScale", 1.5}, {"SidebarTermLimit", std::nullopt}};
    return {
        .run = [=] { defaults->update(changes); },
        .isInMemory = [=] { return defaults->value(preferences::textScale) == 1.5; },
        .next = [=] { defaults->update({}); }};
}

Operation loadAndWatchPreferences(const fs::path &folder) {
    const fs::path file = folder / "Preferences.json";
    UserDefaults(file, {}).set("TextScale", 1.25);
    const auto defaults = std::make_shared<std::optional<UserDefaults>>();
    return {
        .run = [=] { defaults->emplace(file, PreferenceMap()).watch(); },
        .next = [=] { (*defaults)->set("SidebarTermLimit", std::int64_t{3}); }};
}

/// A machine and the folder that it syncs through.
struct SyncedMachine {
    explicit SyncedMachine(const fs::path &folder)
        : defaults(folder / "Preferences.json", {}),
          store(folder / "cloud", queue, "mark", noonClock),
          sync(defaults, store, queue, folder / "Agreed.json") {}
    UserDefaults defaults;
    test::DirectQueue queue;
    SyncedFolder store;
    SettingsSync sync;
};

/// Each side has changed one setting and removed another.
Operation syncSettings(const fs::path &folder) {
    write(
        folder / "Preferences.json",
        R"({"SyncSettingsViaICloud": true, "SyncedFolderMark": "mark", "TextScale": 1.25,)"
        R"( "SidebarTermLimit": 4, "Course.1.Icon": "book"})");
    write(
        folder / "Agreed.json",
        R"({"folder": "mark", "settings": {"TextScale": 1.25, "SidebarTermLimit": 3,)"
        R"( "Course.1.Icon": "book", "Course.2.Icon": "book"}})");
    write(folder / "cloud" / "Ellwynd.folder", R"({"folder": "mark"})");
    write(folder / "cloud" / "TextScale.json", R"({"value": 1.5})");
    write(folder / "cloud" / "SidebarTermLimit.json", R"({"value": 3})");
    write(folder / "cloud" / "Course.2.Icon.json", R"({"value": "book"})");
    const auto machine = std::make_shared<SyncedMachine>(folder);
    return {
        .run =
            [=] {
                machine->store.watch();
                machine->sync.start();
            },
        .isInMemory = [=] { return machine->defaults.value(preferences::sidebarTermLimit) == 4; },
        .next =
            [=] {
                machine->defaults.update({});
                for (int scan = 0; scan < 3; ++scan)
                    machine->sync.push();
            }};
}

Operation writeWidgets(const fs::path &folder) {
    const WidgetSnapshotWriter writer(folder / "widgets", [] {});
    WidgetSnapshotFile snapshot = test::twoTerms();
    writer.write(snapshot);
    snapshot.terms.front().courses.front().atRisk = 5;
    return {.run = [=] { writer.write(snapshot); }};
}

Operation writeFirstWidgets(const fs::path &folder) {
    const WidgetSnapshotWriter writer(folder / "widgets", [] {});
    return {.run = [=] { writer.write(test::twoTerms()); }};
}

Operation clearWidgets(const fs::path &folder) {
    const WidgetSnapshotWriter writer(folder / "widgets", [] {});
    writer.write(test::twoTerms());
    write(folder / "widgets" / ".WidgetSnapshot.json.new-abc123", "of a killed writer");
    return {.run = [=] { writer.clear(); }};
}

Operation readWidgets(const fs::path &folder) {
    const Operation writing = writeWidgets(folder);
    return {.run = [=] {
        try {
            const auto snapshot = readWidgetSnapshot(folder / "widgets");
            EXPECT_EQ(snapshot.value_or(WidgetSnapshotFile()), test::twoTerms());
        } catch (const FileUnavailable &) {
            // The board keeps what it shows.
        }
    }};
}

Operation exportRoster(const fs::path &folder) {
    write(folder / "real" / "roster.csv", "old");
    fs::create_symlink(fs::path("real") / "roster.csv", folder / "roster.csv");
    return {.run = [=] { files::replaceForTeacher(folder / "roster.csv", "a new export"); }};
}

struct Row {
    const char *name;
    Preparation prepare;
    /// Whether it replaces a file more than once, so that one may be between old and new.
    bool hasSteps = false;
    /// Whether it replaces all files or none.
    bool isTogether = false;
};

const std::vector<Row> operations{
    {"record a visit", recordVisit},
    {"record the first visit", recordFirstVisit},
    {"delete the history", deleteHistory},
    {"load the history", loadHistory},
    {"set the history aside", setHistoryAside},
    {"note contacts", noteContacts},
    {"switch contacts off", switchContactsOff},
    {"add a template", addTemplate},
    {"load the templates", loadTemplates},
    {"set preferences", setPreferences},
    {"load and watch the preferences", loadAndWatchPreferences},
    {"sync settings", syncSettings, true},
    {"write the widget files", writeWidgets, false, true},
    {"write the first widget files", writeFirstWidgets, false, true},
    {"clear the widget files", clearWidgets},
    {"read the widget files", readWidgets},
    {"export a roster", exportRoster}};

/// Runs an operation with a failing call.
/// @param without the files as the operation leaves them without one.
/// @return the function whose call failed; empty if the operation makes fewer calls.
std::string runFailing(
    const Row &row, int number, test::Fault fault,
    const std::map<std::string, std::string> &without,
    const std::map<std::string, std::string> &afterNext) {
    const test::TemporaryFolder folder;
    const Operation operation = row.prepare(folder.path());
    const auto before = folder.files();
    const auto descriptors = openDescriptors();
    std::string function;
    {
        const test::FailingCall failing(number, fault);
        try {
            operation.run();
        } catch (const FileError &) {
            EXPECT_STREQ(row.name, "export a roster");
        }
        function = failing.function();
    }
    if (function.empty())
        return function;
    const std::string what = row.name + std::string(", call ") + std::to_string(number) + ", " +
        function + ", " + std::to_string(fault.code);
    EXPECT_TRUE(operation.isInMemory()) << what;
    auto after = folder.files();
    // What could not be removed is a leftover for the next operation.
    std::erase_if(after, [](const auto &entry) {
        return files::isTemporaryName(fs::path(entry.first).filename().string());
    });
    EXPECT_TRUE(!row.isTogether || after == before || after == without) << what;
    for (const auto &[name, bytes] : after) {
        const auto old = before.find(name);
        const auto now = without.find(name);
        const bool isOld = old != before.end() && old->second == bytes;
        const bool isNew = now != without.end() && now->second == bytes;
        const bool isWhole = row.hasSteps && nlohmann::json::accept(bytes);
        EXPECT_TRUE(isOld || isNew || isWhole) << what << ": " << name << " is " << bytes;
    }
    operation.next();
    EXPECT_EQ(folder.files(), afterNext) << what;
    EXPECT_LE(openDescriptors(), descriptors + 3) << what;
    return function;
}

int failedExpectations() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

TEST(FailingCalls, AfterAnyFailureFilesAreWholeAndTheNextOperationSaves) {
    const test::LogCapture log;
    // In memory, if the system has such a folder: thousands of files are written.
    if (fs::is_directory("/dev/shm"))
        qputenv("TMPDIR", "/dev/shm");
    int calls = 0;
    for (const Row &row : operations) {
        const test::TemporaryFolder folder;
        const Operation operation = row.prepare(folder.path());
        operation.run();
        const auto without = folder.files();
        operation.next();
        const auto afterNext = folder.files();
        // The first failure of an operation is enough.
        const int failures = failedExpectations();
        for (int number = 1; failedExpectations() == failures; ++number) {
            std::string function;
            for (const int code :
                 {ENOSPC, EIO, EACCES, EROFS, EMFILE, EDQUOT, EINTR, test::Fault::shortTransfer}) {
                if (!function.empty() && !test::Fault{code}.appliesTo(function))
                    continue;
                function = runFailing(row, number, {code}, without, afterNext);
                if (function.empty() || failedExpectations() > failures)
                    break;
            }
            if (function.empty())
                break;
            ++calls;
        }
    }
    std::cout << calls << " calls failed in turn\n";
    EXPECT_GE(calls, 600) << "an operation is not reached any more";
}

TEST(FailingCalls, AFileIsOnTheDiskBeforeItReplacesTheOldOne) {
    const test::TemporaryFolder folder;
    const test::FailingCall none(0, {});
    files::replace(folder.path() / "a", "bytes");
    std::vector<std::string> order;
    for (const std::string &function : none.functions()) {
        if (function == "write" || function == "fsync" || function == "rename")
            order.push_back(function);
    }
    EXPECT_THAT(order, testing::ElementsAre("write", "fsync", "rename", "fsync"))
        << "the last one is that of the folder";
}

TEST(FailingCalls, AFileThatCannotBeRestoredStaysNew) {
    const test::TemporaryFolder folder;
    const fs::path first = folder.write("first", "old");
    const fs::path second = folder.path() / "second";
    const auto replaceBoth = [&](int failing) {
        files::Replacement one(first, "new");
        files::Replacement two(second, "new");
        fs::create_directory(second);
        const test::FailingCall calls(failing, {.code = EPERM});
        EXPECT_THROW(one.commitWith(two), FileError);
        ::rmdir(second.c_str());
        return calls.functions();
    };
    const std::vector<std::string> called = replaceBoth(0);
    EXPECT_EQ(folder.read("first"), "old");
    const auto link = std::ranges::find(called, "link");
    ASSERT_NE(link, called.end());
    // File systems without hard links refuse it.
    replaceBoth(int(link - called.begin()) + 1);
    EXPECT_EQ(folder.read("first"), "new");
}

} // namespace
} // namespace ellwynd
