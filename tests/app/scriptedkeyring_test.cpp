// What each failure of a secret service means for the program; see support/with-bus.
#include "app/mainwindowcontroller.h"
#include "cli/run.h"
#include "net/runtoend.h"
#include "support/fakecanvas.h"
#include "support/logcapture.h"
#include "support/scriptedkeyring.h"
#include "support/servedcourse.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

#include <sstream>

namespace ellwynd {
namespace {

using test::ScriptedKeyring;
using test::until;

/// Longer than a busy computer takes to answer.
constexpr std::chrono::seconds longLimit{30};
/// For what is never answered.
constexpr std::chrono::seconds shortLimit{1};
/// How long the computer seems to have slept.
ElapsedTime slept{};
ElapsedTime elapsed() {
    return elapsedNow() + slept;
}
const QString isLocked = QStringLiteral("org.freedesktop.Secret.Error.IsLocked");
const QString noSession = QStringLiteral("org.freedesktop.Secret.Error.NoSession");
const QString failed = QStringLiteral("org.freedesktop.DBus.Error.Failed");

/// The token, or the status of the error.
using Read = std::variant<std::optional<std::string>, std::int32_t>;

struct KeyringTest : testing::Test {
    ScriptedKeyring keyring;
    AsyncTokenStore tokens{makeSecretStore(), longLimit};
    AsyncTokenStore impatient{makeSecretStore(), shortLimit};
    const std::string host = "h.example";

    void save(std::string token) {
        const auto saving = [](AsyncTokenStore &store, std::string account,
                               std::string secret) -> QCoro::Task<bool> {
            auto work = store.saveToken(std::move(secret), std::move(account));
            co_await work;
            co_return true;
        };
        EXPECT_TRUE(runToEnd(saving(tokens, host, std::move(token))));
    }

    Read read(AsyncTokenStore &store, UnlockPrompt prompt = UnlockPrompt::allowed) {
        try {
            return runToEnd(store.readToken(host, prompt));
        } catch (const KeychainError &error) {
            return error.status();
        }
    }
};

TEST_F(KeyringTest, ASecretThatIsFoundIsReadOrAnError) {
    using Items = std::vector<ScriptedKeyring::Item>;
    using Prompt = ScriptedKeyring::Prompt;
    struct Row {
        const char *name;
        Items items;
        std::map<QString, QString> errors{};
        std::set<QString> hung{};
        Prompt prompt = Prompt::confirmed;
        bool empty = false;
        UnlockPrompt access = UnlockPrompt::allowed;
        std::optional<std::string> token{};
        std::int32_t status = 0;
        int prompts = 0;
    };
    const ScriptedKeyring::Item open{.account = host, .secret = "open"};
    const ScriptedKeyring::Item locked{.account = host, .secret = "locked", .locked = true};
    const ScriptedKeyring::Item other{.account = "o.example", .secret = "other"};
    const QString get = QStringLiteral("GetSecret");
    for (const Row &row : std::vector<Row>{
             {.name = "none", .items = {other}},
             {.name = "open", .items = {other, open}, .token = "open"},
             {.name = "the newest",
             .items = {{.account = host, .secret = "new", .modified = 9}, open},
             .token = "new"},
             {.name = "an open one before a locked one", .items = {locked, open}, .token = "open"},
             {.name = "unlocked by a prompt", .items = {locked}, .token = "locked", .prompts = 1},
             {.name = "no prompt allowed",
             .items = {locked},
             .access = UnlockPrompt::never,
             .status = KeychainError::locked},
             {.name = "dismissed",
             .items = {locked},
             .prompt = Prompt::dismissed,
             .status = KeychainError::dismissed,
             .prompts = 1},
             {.name = "locked after the search",
             .items = {open},
             .errors = {{get, isLocked}},
             .status = KeychainError::locked},
             {.name = "the session is gone",
             .items = {open},
             .errors = {{get, noSession}},
             .status = KeychainError::unavailable},
             {.name = "loading fails",
             .items = {open},
             .errors = {{get, failed}},
             .status = KeychainError::unavailable},
             {.name = "an empty answer",
             .items = {open},
             .empty = true,
             .status = KeychainError::failed},
             {.name = "searching fails",
             .items = {open},
             .errors = {{QStringLiteral("SearchItems"), failed}},
             .status = KeychainError::unavailable},
             {.name = "no session",
             .items = {open},
             .errors = {{QStringLiteral("OpenSession"), failed}},
             .status = KeychainError::unavailable},
             {.name = "searching hangs",
             .items = {open},
             .hung = {QStringLiteral("SearchItems")},
             .status = KeychainError::timedOut},
             {.name = "loading hangs",
             .items = {open},
             .hung = {get},
             .status = KeychainError::timedOut},
             {.name = "everything hangs",
             .items = {open},
             .hung = {QStringLiteral("GetAll"), QStringLiteral("OpenSession")},
             .status = KeychainError::timedOut}}) {
        keyring.items = row.items;
        keyring.errors = row.errors;
        keyring.hung = row.hung;
        keyring.prompt = row.prompt;
        keyring.answersEmpty = row.empty;
        keyring.prompts = 0;
        const bool hangs = row.status == KeychainError::timedOut;
        const auto result = read(hangs ? impatient : tokens, row.access);
        if (row.status != 0)
            EXPECT_EQ(result, Read(row.status)) << row.name;
        else
            EXPECT_EQ(result, Read(row.token)) << row.name;
        EXPECT_EQ(keyring.prompts, row.prompts) << row.name;
    }
}

TEST_F(KeyringTest, SavingReplacesTheItemInEveryKeyring) {
    keyring.items = {
        {.account = host, .secret = "older"},
        {.account = host, .secret = "in a locked keyring", .locked = true},
        {.account = "o.example", .secret = "other"}};
    save("new");
    EXPECT_TRUE(keyring.items[0].deleted);
    EXPECT_TRUE(keyring.items[1].deleted);
    EXPECT_FALSE(keyring.items[2].deleted);
    ASSERT_EQ(keyring.items.size(), 4U);
    EXPECT_EQ(read(tokens), Read("new"));
    EXPECT_LT(
        keyring.calls.indexOf(QStringLiteral("Delete")),
        keyring.calls.indexOf(QStringLiteral("CreateItem")));

    // What cannot be deleted does not keep the new token out.
    keyring.errors = {{QStringLiteral("Delete"), failed}};
    save("newest");
    EXPECT_EQ(read(tokens), Read("newest"));
}

TEST_F(KeyringTest, NoFailureIsASignOut) {
    test::trustAuthority();
    test::FakeCanvas canvas;
    const auto course = test::inventCourse(4021, {.students = 3, .assignments = 1}, systemNow());
    test::serve(canvas, std::span(&course, 1));
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "Preferences.json";
    UserDefaults defaults(file, {});
    defaults.set(preferences::canvasBaseURL, canvas.address());
    keyring.items = {
        {.account = TokenStore::accountOf(canvas.address()), .secret = "secret-token"}};
    CanvasSession session;
    const Connector connector(defaults, tokens, session);
    Stores stores(defaults, folder.path() / "data");
    TrendSync trends(defaults);
    WidgetSnapshotWriter widgets(folder.path() / "widgets", [] {});
    MainWindowController controller(
        defaults, connector, stores, trends, {.widgets = widgets}, systemNow, elapsed);
    int passes = 0;
    QObject::connect(
        &controller, &MainWindowController::passDidEnd, &controller, [&] { ++passes; });
    controller.refresh();
    ASSERT_TRUE(until([&] { return passes == 1; }));
    ASSERT_EQ(controller.status(), "1 course");

    const auto runCourses = [&](std::string &message) {
        const std::vector<std::string> words{"courses"};
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream err;
        const int status = cli::run(words, in, out, err, file);
        message = err.str();
        return status;
    };
    struct Row {
        const char *method;
        QString error;
    };
    for (const Row &row :
         {Row{"GetSecret", isLocked}, Row{"OpenSession", failed}, Row{"SearchItems", noSession}}) {
        keyring.errors = {{QString::fromLatin1(row.method), row.error}};
        controller.refresh();
        EXPECT_TRUE(until([&] { return controller.status() == "Keychain unavailable"; }))
            << row.method;
        EXPECT_FALSE(controller.courses().isEmpty()) << row.method;
        EXPECT_TRUE(std::filesystem::exists(folder.path() / "widgets" / "WidgetSnapshot.json"));
        std::string message;
        EXPECT_EQ(runCourses(message), 4) << row.method;
        EXPECT_THAT(message, testing::StartsWith("Keychain error (")) << row.method;
        keyring.errors.clear();
        const int before = passes;
        controller.refresh();
        EXPECT_TRUE(until([&] { return passes > before; })) << row.method;
        EXPECT_EQ(controller.status(), "1 course") << row.method;
    }

    // What the program does by itself never raises a prompt; the teacher's refresh does.
    keyring.items[0].locked = true;
    const test::LogCapture log;
    const std::size_t requests = canvas.requests.size();
    slept += std::chrono::hours(2);
    controller.computerDidWake();
    EXPECT_TRUE(until([&] {
        const std::vector<std::string> lines = test::LogCapture::lines();
        return std::ranges::any_of(lines, [](const std::string &line) {
            return line.starts_with("widgets: Skipping widget refresh, Keychain unreadable: ");
        });
    }));
    EXPECT_EQ(keyring.prompts, 0);
    EXPECT_EQ(canvas.requests.size(), requests);
    const int before = passes;
    controller.refresh();
    EXPECT_TRUE(until([&] { return passes > before; }));
    EXPECT_EQ(keyring.prompts, 1);
    EXPECT_EQ(controller.status(), "1 course");
}

// Last, since the library keeps waiting for the prompt.
TEST_F(KeyringTest, APromptThatIsNeverAnsweredCostsOneOperation) {
    keyring.items = {{.account = host, .secret = "locked", .locked = true}};
    keyring.prompt = ScriptedKeyring::Prompt::ignored;
    for (const char *time : {"first", "second"})
        EXPECT_EQ(read(impatient), Read(std::int32_t(KeychainError::timedOut))) << time;
    EXPECT_EQ(keyring.prompts, 2);
    keyring.items.push_back({.account = host, .secret = "open"});
    EXPECT_EQ(read(impatient), Read("open"));
}

} // namespace
} // namespace ellwynd
