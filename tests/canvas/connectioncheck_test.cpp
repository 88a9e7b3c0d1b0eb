#include "canvas/canvaslinks.h"
#include "canvas/connectioncheck.h"
#include "net/runtoend.h"
#include "support/core.h"
#include "support/fakecanvas.h"
#include "support/logcapture.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const KeychainError locked(KeychainError::locked, "The keyring is locked.");

TEST(KeychainError, MessageHasTheStatus) {
    EXPECT_STREQ(locked.what(), "Keychain error (3): The keyring is locked.");
    EXPECT_STREQ(KeychainError(-7, "").what(), "Keychain error (-7): unknown error");
}

TEST(ConnectionCheck, AcceptsOnlyHttpsAddressesWithAHost) {
    const std::string page = "/profile/settings";
    for (const auto &[typed, address, tokenPage] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {" https://h.example \n", "https://h.example", "https://h.example" + page},
             {"https://h.example/", "https://h.example/", "https://h.example" + page},
             {"https://h.example/lms", "https://h.example/lms", "https://h.example/lms" + page},
             {"https://h.example/lms?x=1#y", "https://h.example/lms?x=1#y",
              "https://h.example/lms" + page}}) {
        EXPECT_EQ(ConnectionCheck::validAddress(typed), address);
        EXPECT_EQ(canvasLinks::tokenPage(address), tokenPage);
    }
    for (const char *typed :
         {"http://h.example", "HTTPS://h.example", "h.example", "https://", "https:///x",
          "https://h example", ""}) {
        EXPECT_EQ(ConnectionCheck::validAddress(typed), std::nullopt) << typed;
        EXPECT_EQ(canvasLinks::tokenPage(typed), std::nullopt) << typed;
    }
}

TEST(CanvasLinks, NeedIDs) {
    const std::string base = "https://h.example";
    EXPECT_EQ(canvasLinks::course(base, 0), std::nullopt);
    EXPECT_EQ(canvasLinks::grades(base, 7, -1), std::nullopt);
    EXPECT_EQ(canvasLinks::assignment(base, 0, 8), std::nullopt);
}

TEST(ConnectionCheck, SuggestsTheAddressOfWhatWasCopiedFromABrowser) {
    const std::string school = "https://canvas.school.edu";
    for (const char *typed :
         {"canvas.school.edu", " canvas.school.edu\n", "canvas.school.edu/courses/4021",
          "https://canvas.school.edu/courses/4021", "https://canvas.school.edu/?login_success=1",
          "https://canvas.school.edu#top", "https://teacher@canvas.school.edu/",
          "http://canvas.school.edu:80/login", "HTTPS://Canvas.School.edu"})
        EXPECT_EQ(ConnectionCheck::suggestedAddress(typed), school) << typed;
    EXPECT_EQ(ConnectionCheck::suggestedAddress(school + ":8443/courses"), school + ":8443");
    for (const char *typed :
         {"https://canvas.school.edu", "https://canvas.school.edu/", "canvas", "canvas.",
          "canvas school.edu", "ftp://canvas.school.edu/x", "mailto:ana@school.edu", "https://",
          ""})
        EXPECT_EQ(ConnectionCheck::suggestedAddress(typed), std::nullopt) << typed;
}

TEST(ConnectionCheck, StateDescribesTheSavedConnection) {
    test::Core core;
    const auto state = [&core] { return runToEnd(core.check.state()); };
    EXPECT_EQ(state().placeholder, "Paste your Canvas access token");
    EXPECT_EQ(state().status, "No token saved yet — paste one below to connect.");
    core.connectTo("https://h.example/lms");
    EXPECT_EQ(state().address, "https://h.example/lms");
    EXPECT_EQ(state().placeholder, "Token saved — leave blank to keep it");
    EXPECT_EQ(state().status, "A token is saved in your Keychain for h.example.");
    core.secrets.failure = locked;
    const test::LogCapture log;
    EXPECT_TRUE(state().keychainUnavailable);
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("settings: Could not read the Keychain: ")));
    EXPECT_EQ(
        state().status,
        "Your Keychain would not open, so Ellwynd cannot tell whether a token is saved for "
        "h.example. Unlock it in Keychain Access and reopen Ellwynd before pasting a new one.");
}

TEST(ConnectionCheck, SavesAnAddressOnlyWithATokenForItsHost) {
    test::Core core;
    const auto save = [&core](const std::string &address, const std::string &token) {
        return runToEnd(core.check.save(address, token));
    };
    EXPECT_THAT(save("h.example", "t").status, StartsWith("Enter your institution's"));
    EXPECT_EQ(save("https://h.example", " ").status, "Please paste your Canvas access token.");
    core.secrets.failure = locked;
    EXPECT_EQ(save("https://h.example", "t").status, locked.what());
    core.secrets.failure.reset();
    EXPECT_EQ(core.defaults.value(preferences::canvasBaseURL), "");

    const test::LogCapture log;
    EXPECT_TRUE(save(" https://h.example ", " t\n").succeeded);
    EXPECT_THAT(log.lines(), ElementsAre("settings: Saved Canvas connection settings"));
    EXPECT_EQ(core.defaults.value(preferences::canvasBaseURL), "https://h.example");
    EXPECT_EQ(core.secrets.secrets.begin()->second, "t");
    EXPECT_TRUE(save("https://h.example/lms", "").succeeded) << "the token is kept";
    EXPECT_FALSE(save("https://other.example", "").succeeded);
    EXPECT_EQ(core.defaults.value(preferences::canvasBaseURL), "https://h.example/lms");
}

TEST(ConnectionCheck, SigningOutAlwaysRemovesTheAddress) {
    test::Core core;
    core.connectTo("https://h.example");
    EXPECT_TRUE(runToEnd(core.check.signOut()).succeeded);
    EXPECT_TRUE(core.secrets.secrets.empty());
    EXPECT_EQ(core.defaults.value(preferences::canvasBaseURL), "");
    core.connectTo("https://h.example");
    core.secrets.failure = locked;
    const test::LogCapture log;
    const ConnectionOutcome outcome = runToEnd(core.check.signOut());
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            StartsWith("settings: Could not delete the token: "),
            "settings: Signed out of Canvas and cleared the stored address"));
    EXPECT_THAT(outcome.status, HasSubstr("could not be deleted"));
    EXPECT_THAT(outcome.advice, HasSubstr("“Canvas access token for h.example”"));
    EXPECT_EQ(core.defaults.value(preferences::canvasBaseURL), "");
}

TEST(ConnectionCheck, TestsWithoutSaving) {
    test::trustAuthority();
    test::Core core;
    test::FakeCanvas canvas;
    canvas.answerWith([&](const test::FakeRequest &request) {
        const bool isKnown = request.headers.value("authorization") == "Bearer secret-token";
        return test::FakeReply{.status = isKnown ? 200 : 401, .body = R"({"name":"Ana Ruiz"})"};
    });
    const auto test = [&](const std::string &address, const std::string &token) {
        return runToEnd(core.check.test(address, token));
    };
    using Field = ConnectionOutcome::Field;
    EXPECT_EQ(test(canvas.address(), "secret-token ").status, "Connected as Ana Ruiz");
    EXPECT_TRUE(test(canvas.address(), "secret-token").succeeded);
    EXPECT_EQ(test(canvas.address(), "wrong").field, Field::token);
    EXPECT_EQ(test("https://localhost:1", "t").field, Field::address);
    EXPECT_EQ(test(canvas.address(), "bro\r\nken: 1").status, "Canvas rejected the access token.");
    EXPECT_FALSE(canvas.requests.back().headers.contains("ken"));
    EXPECT_EQ(test(canvas.address(), "").status, "Paste your Canvas access token first.");
    EXPECT_THAT(test("localhost", "t").status, StartsWith("Enter your Canvas address first"));
    EXPECT_TRUE(core.secrets.secrets.empty());
    core.connectTo(canvas.address());
    EXPECT_EQ(test(canvas.address(), "").status, "Connected as Ana Ruiz");
    const test::LogCapture log;
    core.secrets.failure = locked;
    EXPECT_EQ(test(canvas.address(), "").status, locked.what());
    EXPECT_THAT(test::LogCapture::lines(), testing::Contains("settings: Connection test failed"));

    std::stop_source stop;
    canvas.answerWith([&](const test::FakeRequest &) {
        stop.request_stop();
        return test::FakeReply{.manner = test::FakeReply::Manner::silent};
    });
    EXPECT_THROW(
        (void)runToEnd(core.check.test(canvas.address(), "t", stop.get_token())), Cancelled);
}

TEST(TokenStore, ASecretThatIsNotTextIsIgnored) {
    test::MemorySecrets secrets;
    const TokenStore tokens(secrets);
    tokens.saveToken("\xff\xfe", "h");
    EXPECT_EQ(tokens.readToken("h"), std::nullopt);
    tokens.saveToken("ü", "h");
    EXPECT_EQ(tokens.readToken("h"), "ü");
    tokens.deleteToken("h");
    tokens.deleteToken("h");
    EXPECT_EQ(TokenStore::accountOf("https://H.example:8443/x"), "h.example");
    EXPECT_EQ(TokenStore::accountOf("nonsense"), "nonsense");
}

} // namespace
} // namespace ellwynd
