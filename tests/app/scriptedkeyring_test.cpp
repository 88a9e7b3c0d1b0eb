// What each failure of a secret service means for the program; see support/with-bus.
#include "app/mainwindowcontroller.h"
#include "cli/run.h"
#include "net/runtoend.h"
#include "support/core.h"
#include "support/fakecanvas.h"
#include "support/logcapture.h"
#include "support/scriptedkeyring.h"
#include "support/servedcourse.h"
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
        const auto saving = tokens.saveToken(std::move(token), host);
        EXPECT_TRUE(until([&] { return saving.isReady(); }));
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
    using Prompt = ScriptedKeyring::Prompt;
    /// What goes wrong.
    struct Trouble {
        std::map<QString, QString> errors{};
        std::set<QString> hung{};
        Prompt prompt = Prompt::confirmed;
        bool empty = false;
        UnlockPrompt access = UnlockPrompt::allowed;
    };
    struct Row {
        const char *name;
        std::vector<ScriptedKeyring::Item> items;
        Trouble trouble;
        Read result;
        int prompts = 0;
    };
    const ScriptedKeyring::Item open{.account = host, .secret = "open"};
    const ScriptedKeyring::Item newer{.account = host, .secret = "new", .modified = 9};
    const ScriptedKeyring::Item locked{.account = host, .secret = "locked", .locked = true};
    const ScriptedKeyring::Item other{.account = "o.example", .secret = "other"};
    const auto fails = [](const char *method, const QString &error) {
        return Trouble{.errors = {{QString::fromLatin1(method), error}}};
    };
    const auto hangs = [](auto... methods) {
        return Trouble{.hung = {QString::fromLatin1(methods)...}};
    };
    const auto items = [](auto... each) { return std::vector<ScriptedKeyring::Item>{each...}; };
    const Trouble noTrouble;
    for (const Row &row : std::vector<Row>{
             {"none", items(other), noTrouble, std::nullopt},
             {"open", items(other, open), noTrouble, "open"},
             {"the newest", items(newer, open), noTrouble, "new"},
             {"an open one before a locked one", items(locked, open), noTrouble, "open"},
             {"unlocked by a prompt", items(locked), noTrouble, "locked", 1},
             {"no prompt allowed", items(locked), Trouble{.access = UnlockPrompt::never},
              KeychainError::locked},
             {"dismissed", items(locked), Trouble{.prompt = Prompt::dismissed},
              KeychainError::dismissed, 1},
             {"locked meanwhile", items(open), fails("GetSecret", isLocked), KeychainError::locked},
             {"the session is gone", items(open), fails("GetSecret", noSession),
              KeychainError::unavailable},
             {"loading fails", items(open), fails("GetSecret", failed), KeychainError::unavailable},
             {"an empty answer", items(open), Trouble{.empty = true}, KeychainError::failed},
             {"searching fails", items(open), fails("SearchItems", failed),
              KeychainError::unavailable},
             {"no session", items(open), fails("OpenSession", failed), KeychainError::unavailable},
             {"searching hangs", items(open), hangs("SearchItems"), KeychainError::timedOut},
             {"loading hangs", items(open), hangs("GetSecret"), KeychainError::timedOut},
             {"everything hangs", items(open), hangs("GetAll", "OpenSession"),
              KeychainError::timedOut}}) {
        keyring.items = row.items;
        keyring.errors = row.trouble.errors;
        keyring.hung = row.trouble.hung;
        keyring.prompt = row.trouble.prompt;
        keyring.answersEmpty = row.trouble.empty;
        keyring.prompts = 0;
        const bool isLate = row.result == Read(std::int32_t(KeychainError::timedOut));
        EXPECT_EQ(read(isLate ? impatient : tokens, row.trouble.access), row.result) << row.name;
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

TEST(NoKeyring, IsAnError) {
    AsyncTokenStore tokens(makeSecretStore(), longLimit);
    EXPECT_THAT(
        [&] { (void)runToEnd(tokens.readToken("h.example", UnlockPrompt::allowed)); },
        testing::Throws<KeychainError>(
            testing::Property(&KeychainError::status, KeychainError::unavailable)))
        << "there is a bus, but nothing on it";
}

TEST_F(KeyringTest, NoFailureIsASignOut) {
    test::trustAuthority();
    test::FakeCanvas canvas;
    const auto course = test::inventCourse(4021, {.students = 3, .assignments = 1}, systemNow());
    test::serve(canvas, std::span(&course, 1));
    test::Core core;
    core.defaults.set(preferences::canvasBaseURL, canvas.address());
    keyring.items = {
        {.account = TokenStore::accountOf(canvas.address()), .secret = "secret-token"}};
    const Connector connector(core.defaults, tokens, core.session);
    MainWindowController controller(
        core.defaults, connector, core.stores, core.trends, core.sinks, systemNow, elapsed);
    int passes = 0;
    QObject::connect(
        &controller, &MainWindowController::passDidEnd, &controller, [&] { ++passes; });
    controller.showCourse(4021);
    controller.refresh();
    ASSERT_TRUE(until([&] { return passes == 1; }));
    ASSERT_EQ(controller.status(), "1 course");
    const SharedList<RiskRow> rows = controller.roster().rows;
    ASSERT_EQ(rows.size(), 3U);

    const std::pair<const char *, QString> errors[] = {
        {"GetSecret", isLocked}, {"OpenSession", failed}, {"SearchItems", noSession}};
    for (const auto &[method, error] : errors) {
        keyring.errors = {{QString::fromLatin1(method), error}};
        controller.refresh();
        EXPECT_TRUE(until([&] { return controller.status() == "Keychain unavailable"; })) << method;
        EXPECT_FALSE(controller.courses().isEmpty()) << method;
        // The roster on screen is read again with the token that was read before.
        const std::size_t requests = canvas.requests.size();
        controller.refreshRoster();
        EXPECT_TRUE(until([&] { return !controller.isLoading(); })) << method;
        EXPECT_EQ(canvas.requests.size(), requests + 3) << method;
        EXPECT_EQ(controller.roster().rows, rows) << method;
        EXPECT_FALSE(core.folder.read("widgets/WidgetSnapshot.json").empty()) << method;
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream message;
        const std::vector<std::string> words{"courses"};
        const int status =
            cli::run(words, in, out, message, core.folder.path() / "Preferences.json");
        EXPECT_EQ(status, 4) << method;
        EXPECT_THAT(message.str(), testing::StartsWith("Keychain error (")) << method;
        keyring.errors.clear();
        const int before = passes;
        controller.refresh();
        EXPECT_TRUE(until([&] { return passes > before; })) << method;
        EXPECT_EQ(controller.status(), "1 course") << method;
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
