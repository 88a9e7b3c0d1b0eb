#include "app/updates/updater.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;
using test::FakeReply;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

std::string feed(const std::string &items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Ellwynd</title>)" +
        items + "</channel></rss>";
}

std::string item(const std::string &build, const std::string &version) {
    return "<item><title>New</title><sparkle:version>" + build +
        "</sparkle:version><sparkle:shortVersionString>" + version +
        "</sparkle:shortVersionString></item>";
}

TEST(Appcast, BuildsAreComparedAsNumbers) {
    std::string older = "1.0";
    for (const std::string newer :
         {"1.0.1", "1.9", "1.10", "1.99.99", "2", "9", "10", "99999999999999999999999",
          "100000000000000000000000"}) {
        EXPECT_TRUE(isNewerBuild(newer, older)) << newer << " / " << older;
        EXPECT_FALSE(isNewerBuild(older, newer)) << older << " / " << newer;
        older = newer;
    }
    EXPECT_FALSE(isNewerBuild("1.0.0", "1"));
    EXPECT_FALSE(isNewerBuild("1", "1.0.0"));
    EXPECT_FALSE(isNewerBuild("01.2", "1.2"));
    for (const char *invalid : {"2b1", "2.", ".2", "2..1", "-2", ""}) {
        EXPECT_FALSE(isNewerBuild(invalid, "1")) << invalid;
        EXPECT_FALSE(isNewerBuild("3", invalid)) << invalid;
    }
}

TEST(Appcast, TheNewestItemIsOffered) {
    using Offer = std::optional<Update>;
    const std::string namespaced =
        R"(<rss xmlns:s="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel><item>)"
        R"(<enclosure url="https://a.example/x" s:version="7" s:shortVersionString="0.7"/>)"
        R"(</item></channel></rss>)";
    const std::string foreign = R"(<rss xmlns:sparkle="https://elsewhere.example/"><channel>)" +
        item("9", "9") + "</channel></rss>";
    for (const auto &[what, text, offer] :
         std::vector<std::tuple<const char *, std::string, Offer>>{
             {"for this system or all",
              feed(R"(<item><enclosure sparkle:version="9" sparkle:os="macos"/></item>)"
                   R"(<item><enclosure sparkle:version="8" sparkle:os="windows"/></item>)"
                   R"(<item><enclosure sparkle:version="5" sparkle:os="linux"/></item>)"
                   R"(<item><enclosure sparkle:version="4"/></item>)"),
              Update{"5", "5"}},
             {"the highest build, in any order",
              feed(item("9", "0.9") + item("10", "1.0") + item("8", "0.8")), Update{"10", "1.0"}},
             {"attributes, under any prefix", namespaced, Update{"7", "0.7"}},
             {"elements take precedence over attributes",
              feed(R"(<item><enclosure sparkle:version="3"/><sparkle:version>4</sparkle:version>)"
                   R"(<sparkle:deltas><enclosure sparkle:version="99"/></sparkle:deltas></item>)"),
              Update{"4", "4"}},
             {"another namespace", foreign, std::nullopt},
             {"no items", feed(""), std::nullopt},
             {"an item of a channel",
              feed("<item><sparkle:version>5</sparkle:version>"
                   "<sparkle:channel>beta</sparkle:channel></item>"),
              std::nullopt},
             {"a build that is not a number", feed(item("5b", "5")), std::nullopt},
             {"an overlong build", feed(item(std::string(5000, '9'), "5")), std::nullopt},
             {"an overlong version", feed(item("5", std::string(5000, 'x'))), Update{"5", "5"}},
             {"a version with a bidirectional override", feed(item("5", "1\u202e2")),
              Update{"5", "5"}},
             {"markup is text", feed(item("5", "&lt;b&gt;&#x31;")), Update{"5", "<b>1"}},
         })
        EXPECT_EQ(newestUpdate(text), offer) << what;
}

TEST(Appcast, InvalidFeedsAreErrors) {
    const std::string valid = feed(item("2", "2"));
    for (const std::string &text :
         {std::string(), std::string("<html></html>"), valid.substr(0, 200), valid + "<more/>",
          feed("<item><sparkle:version>1<b/></sparkle:version></item>"),
          feed(item("&unknown;", "1")), "<!DOCTYPE rss>" + valid.substr(valid.find("<rss"))})
        EXPECT_THROW(static_cast<void>(newestUpdate(text)), UpdateError) << text.substr(0, 80);
}

Date currentTime = test::noon;

struct UpdaterTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    test::FakeCanvas server;
    test::LogCapture log;
    AppcastFeed source{defaults, server.address() + "/appcast.xml", [] { return currentTime; }};
    Updater updater{defaults, source, "2", [] { return currentTime; }};
    std::vector<std::string> told;

    UpdaterTest() {
        test::trustAuthority();
        currentTime = test::noon;
        serve(feed(item("2", "0.2")));
        listen(updater);
    }

    void listen(const Updater &to) {
        QObject::connect(&to, &Updater::updateDidAppear, &to, [this](const QString &version) {
            told.push_back("found " + version.toStdString());
        });
        QObject::connect(
            &to, &Updater::updateDidDisappear, &to, [this] { told.emplace_back("withdrawn"); });
        QObject::connect(
            &to, &Updater::checkDidFindNothing, &to, [this] { told.emplace_back("up to date"); });
        QObject::connect(&to, &Updater::checkDidFail, &to, [this](const QString &message) {
            told.push_back("failed: " + message.toStdString());
        });
    }

    void serve(const std::string &text) { answer({.body = QByteArray::fromStdString(text)}); }
    void answer(const FakeReply &reply) {
        server.answerWith([reply](const test::FakeRequest &) { return reply; });
    }

    /// Runs a check requested by the teacher to its end.
    std::vector<std::string> check(Updater &of) {
        told.clear();
        of.checkForUpdates();
        EXPECT_TRUE(test::until([this] { return !told.empty(); }));
        return told;
    }
    std::vector<std::string> check() { return check(updater); }
    std::vector<std::string> check(AppcastFeed other) {
        Updater of(defaults, other, "2", test::noonClock);
        listen(of);
        return check(of);
    }

    /// The queries of the requests so far.
    [[nodiscard]] std::vector<std::string> queries() const {
        std::vector<std::string> list;
        for (const test::FakeRequest &request : server.requests)
            list.push_back(request.query.toStdString());
        return list;
    }

    [[nodiscard]] std::string countedDay() const {
        return defaults.value(preferences::lastCountedCheckDay);
    }
};

TEST_F(UpdaterTest, TheFirstCheckOfADayIsCountedOnce) {
    EXPECT_THAT(check(), ElementsAre("up to date"));
    EXPECT_EQ(countedDay(), "2026-09-24");
    check();
    currentTime += 24h;
    check();
    EXPECT_THAT(queries(), ElementsAre("fd=1", "", "fd=1"));
    EXPECT_EQ(countedDay(), "2026-09-25");
    // Apart from the marker, the request identifies only the program.
    const auto &headers = server.requests.front().headers;
    EXPECT_EQ(headers.value("user-agent").left(8), "Ellwynd/");
    EXPECT_FALSE(headers.contains("cookie"));
    EXPECT_FALSE(headers.contains("authorization"));
}

TEST_F(UpdaterTest, AFailedCheckIsNotRepeatedEarlyButItsMarkerIs) {
    answer({.status = 500});
    updater.checkIfDue();
    EXPECT_TRUE(test::until([&] { return log.lines().size() == 2; }));
    EXPECT_THAT(log.lines().back(), HasSubstr("status 500"));
    updater.checkIfDue();
    EXPECT_EQ(log.lines().back(), "settings: Skipping the update check; Sparkle looked recently");
    EXPECT_THAT(told, ElementsAre());
    EXPECT_EQ(countedDay(), "");
    serve("<rss>");
    check();
    serve(feed(item("3", "0.3")));
    EXPECT_THAT(check(), ElementsAre("found 0.3"));
    check();
    EXPECT_THAT(queries(), ElementsAre("fd=1", "fd=1", "fd=1", ""));
}

TEST_F(UpdaterTest, TheMarkerIsAppendedToTheQueryOfTheAddress) {
    check(AppcastFeed(defaults, server.address() + "/feed?os=linux", test::noonClock));
    EXPECT_THAT(queries(), ElementsAre("os=linux&fd=1"));
}

TEST_F(UpdaterTest, NewerBuildsAreAnnouncedAndRemembered) {
    EXPECT_EQ(updater.pendingUpdate(), std::nullopt);
    for (const char *build : {"1", "1.9", "2", "2.0"}) {
        serve(feed(item(build, "old")));
        EXPECT_THAT(check(), ElementsAre("up to date")) << build;
    }
    serve(feed(item("2.1", "0.2.1")));
    EXPECT_THAT(check(), ElementsAre("found 0.2.1"));
    EXPECT_THAT(log.lines(), Contains("settings: Update 0.2.1 found; showing the sidebar banner"));
    EXPECT_EQ(defaults.value(preferences::pendingUpdateBuild), "2.1");
    EXPECT_EQ(defaults.value(preferences::pendingUpdateVersion), "0.2.1");

    // A failed check changes nothing; a feed without the update withdraws it.
    answer({.status = 404});
    check();
    EXPECT_EQ(updater.pendingUpdate(), (Update{"2.1", "0.2.1"}));
    serve(feed(""));
    EXPECT_THAT(check(), ElementsAre("withdrawn", "up to date"));
    EXPECT_FALSE(defaults.object(preferences::pendingUpdateBuild.name));
}

TEST_F(UpdaterTest, APendingUpdateEndsOnceInstalled) {
    defaults.set(preferences::automaticUpdateChecks, false);
    for (const char *running : {"2", "3", "4", "unknown"}) {
        const bool isPending = running == std::string_view("2");
        for (const bool hasFeed : {true, false}) {
            SCOPED_TRACE(running);
            defaults.set(preferences::pendingUpdateBuild, std::string("3"));
            defaults.set(preferences::pendingUpdateVersion, std::string("0.3"));
            AppcastFeed none(defaults, "");
            Updater of(defaults, hasFeed ? source : none, running);
            listen(of);
            told.clear();
            of.start();
            EXPECT_EQ(!told.empty(), isPending && hasFeed);
            EXPECT_EQ(defaults.object(preferences::pendingUpdateBuild.name).has_value(), isPending);
            EXPECT_EQ(of.pendingUpdate().has_value(), isPending);
        }
    }
}

TEST_F(UpdaterTest, AutomaticChecksAreLimitedAndSilent) {
    const std::string checking = "settings: Checking for updates";
    const std::string skipping = "settings: Skipping the update check; Sparkle looked recently";
    const auto lineAt = [&](Date time) {
        currentTime = time;
        log.lines().clear();
        updater.checkIfDue();
        const std::string line = log.lines().back();
        EXPECT_TRUE(line != checking || test::until([&] { return !countedDay().empty(); }));
        defaults.remove(preferences::lastCountedCheckDay.name);
        return line;
    };
    const Date begin = test::noon;
    EXPECT_EQ(lineAt(begin), checking);
    EXPECT_EQ(lineAt(begin), skipping);
    EXPECT_EQ(lineAt(begin + 24h - 1s), skipping);
    EXPECT_EQ(lineAt(begin + 24h), checking);
    EXPECT_EQ(lineAt(begin - 24h), checking) << "a last check in the future is ignored";
    EXPECT_EQ(server.requests.size(), 3U);
    EXPECT_THAT(told, ElementsAre());

    log.lines().clear();
    currentTime += 48h;
    defaults.set(preferences::automaticUpdateChecks, false);
    updater.checkIfDue();
    EXPECT_THAT(log.lines(), ElementsAre());
    EXPECT_THAT(check(), ElementsAre("up to date")) << "the teacher may still request a check";
}

TEST_F(UpdaterTest, TheScheduleFollowsTheClock) {
    Updater of(
        defaults, source, "2", [] { return currentTime; }, 1ms);
    of.start();
    EXPECT_TRUE(test::until([&] { return countedDay() == "2026-09-24"; }));
    currentTime += 24h;
    EXPECT_TRUE(test::until([&] { return countedDay() == "2026-09-25"; }));
    EXPECT_EQ(server.requests.size(), 2U);
    EXPECT_THAT(log.lines(), testing::Not(Contains(HasSubstr("Skipping"))));
}

TEST_F(UpdaterTest, ARequestedCheckJoinsARunningOne) {
    updater.checkIfDue();
    EXPECT_THAT(check(), ElementsAre("up to date"));
    EXPECT_EQ(server.requests.size(), 1U);
}

TEST_F(UpdaterTest, InvalidResponsesAreReported) {
    for (const auto &[reply, message] : std::vector<std::pair<FakeReply, const char *>>{
             {{.body = QByteArray(qsizetype{2} << 20, ' ')}, "it is too long"},
             {{.status = 302, .headers = {{"Location", "https://elsewhere.example/"}}},
              "status 302"},
             {{.manner = FakeReply::Manner::closed}, "couldn’t be loaded"},
             {{.body = "<!DOCTYPE rss><rss/>"}, "declares a document type"},
         }) {
        answer(reply);
        EXPECT_THAT(check(), ElementsAre(HasSubstr(message)));
    }
    EXPECT_EQ(countedDay(), "");
    answer({.manner = FakeReply::Manner::trickle});
    EXPECT_THAT(
        check(AppcastFeed(defaults, server.address(), test::noonClock, {.totalTimeout = 50ms})),
        ElementsAre(HasSubstr("took too long")));
}

TEST_F(UpdaterTest, WithoutAFeedNothingHappens) {
    for (const char *address :
         {"", "http://localhost/appcast.xml", "HTTPS://localhost/appcast.xml", "https://",
          "https:", "https:///appcast.xml", "file:///appcast.xml"}) {
        AppcastFeed none(defaults, address);
        Updater of(defaults, none, "2");
        EXPECT_FALSE(of.mayCheck()) << address;
        listen(of);
        of.start();
        of.checkForUpdates();
    }
    EXPECT_THAT(log.lines(), ElementsAre());
    EXPECT_THAT(told, ElementsAre());
    EXPECT_FALSE(defaults.object(preferences::lastUpdateCheck.name));
}

} // namespace
} // namespace ellwynd
