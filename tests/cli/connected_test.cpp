// The command line from connecting to signing out, with a real secret service
// (support/with-keyring) and a Canvas server on loopback.
#include "base/date.h"
#include "base/log.h"
#include "cli/run.h"
#include "platform/folders/directories.h"
#include "support/fakecanvas.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace ellwynd::cli {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

std::string allMessages;

/// Without locks.
std::ptrdiff_t filesIn(const std::filesystem::path &folder) {
    return std::ranges::count_if(
        std::filesystem::directory_iterator(folder),
        [](const auto &entry) { return entry.path().extension() == ".json"; });
}

TEST(Connected, TheTokenAppearsInNoFileAndNoOutput) {
    test::trustAuthority();
    const test::TemporaryFolder folder;
    test::FakeCanvas canvas;
    canvas.plan(QStringLiteral("/api/v1/users/self"), {{.body = R"({"name":"Ana Ruiz"})"}});
    canvas.serve(
        QStringLiteral("/api/v1/courses"),
        {R"({"id":4021,"name":"Bio","term":{"id":9,"name":"Now","start_at":")" +
         QByteArray::fromStdString(formatInstant(systemNow() - std::chrono::hours(240))) +
         R"("}})"});
    canvas.serve(
        QStringLiteral("/api/v1/courses/4021/enrollments"),
        {R"({"user_id":77001,"user":{"id":77001,"name":"Zoe Quill"},"grades":{"current_score":41.4375}})"});
    canvas.serve(QStringLiteral("/api/v1/courses/4021/assignment_groups"), {});
    canvas.serve(QStringLiteral("/api/v1/courses/4021/students/submissions"), {});
    Log::setSink([](std::string_view category, Log::Level, std::string_view message) {
        allMessages += std::string(category) + ": " + std::string(message) + "\n";
    });
    const auto call = [&](const std::vector<std::string> &words, int status) {
        std::istringstream in("secret-token\n");
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(run(words, in, out, err, folder.path() / "Preferences.json"), status)
            << err.str();
        allMessages += err.str();
        return out.str();
    };

    EXPECT_EQ(call({"connect", canvas.address()}, 0), "Connected as Ana Ruiz\n");
    EXPECT_EQ(json::parse(call({"status", "--json"}, 0))["state"], "connected");
    EXPECT_EQ(json::parse(call({"courses", "--json"}, 0))[0]["name"], "Bio");
    const json roster = json::parse(call({"roster", "4021", "--json"}, 0));
    EXPECT_EQ(roster["rows"][0]["name"], "Zoe Quill");
    EXPECT_EQ(roster["rows"][0]["level"], "At Risk");
    EXPECT_THAT(call({"thresholds", "4021", "--passing", "40"}, 0), HasSubstr("40% passing"));
    EXPECT_EQ(json::parse(call({"roster", "4021", "--json"}, 0))["rows"][0]["level"], nullptr);

    // A contact is recorded by id, only with --note, and not with one that is refused.
    call({"contacted", "4021", "77001", "1"}, 1);
    call(
        {"message", "4021", "--template", "Email", "--student", "77001", "--student", "1",
         "--note"},
        1);
    EXPECT_FALSE(std::filesystem::exists(directories::data() / "ContactLog.json"));
    call({"-RememberContacts", "NO", "contacted", "4021", "77001"}, 1);
    EXPECT_THAT(allMessages, testing::EndsWith("\nContact marks are turned off in Settings.\n"));
    call({"message", "4021", "--template", "Referral Summary", "--student", "77001"}, 0);
    EXPECT_THAT(call({"roster", "4021", "--csv"}, 0), testing::EndsWith(",never,,,\n"));
    EXPECT_EQ(
        call(
            {"message", "4021", "--template", "Referral Summary", "--student", "77001", "--note"},
            0),
        "Zoe Quill — Bio\nCurrent score: 41% (passing 40%)\n");
    EXPECT_THAT(
        call({"roster", "4021", "--csv"}, 0),
        testing::ContainsRegex(",never,,[0-9]{4}-[0-9]{2}-[0-9]{2},no change\n$"));
    // A contact that cannot be saved is a failure.
    const std::filesystem::path home = qgetenv("HOME").toStdString();
    const auto log = directories::data() / "ContactLog.json";
    std::filesystem::rename(log, home / "elsewhere");
    std::filesystem::create_symlink("ContactLog.json", log);
    call({"contacted", "4021", "77001"}, 1);
    call({"message", "4021", "--template", "Email", "--student", "77001", "--note"}, 1);
    EXPECT_THAT(allMessages, testing::EndsWith("\nThe change couldn't be saved.\n"));
    std::filesystem::rename(home / "elsewhere", log);
    // A visit, and what is computed from it.
    EXPECT_EQ(json::parse(call({"privacy", "--json"}, 0))["history"], "Nothing recorded.");
    call({"roster", "4021", "--visit"}, 0);
    call({"contacted", "4021", "77001"}, 0);
    const json student = json::parse(call({"student", "4021", "77001", "--json"}, 0));
    EXPECT_EQ(student["outreach"], "Wrote today — not flagged");
    EXPECT_EQ(student["story"], nullptr);
    EXPECT_EQ(json::parse(call({"privacy", "--json"}, 0))["history"], "1 day recorded.");
    const json dashboard = json::parse(call({"dashboard", "--json"}, 0));
    EXPECT_EQ(dashboard["headline"], "0 flagged across 1 course");
    call({"student", "4021", "1"}, 1);
    // Names are compared with what is read anyway.
    const auto requestsOf = [&](const std::vector<std::string> &words) {
        const std::size_t before = canvas.requests.size();
        call(words, 0);
        return canvas.requests.size() - before;
    };
    EXPECT_EQ(requestsOf({"student", "bio", "quill"}), requestsOf({"student", "4021", "77001"}));
    EXPECT_EQ(requestsOf({"thresholds", "bio"}), requestsOf({"thresholds", "4021"}));
    EXPECT_EQ(json::parse(call({"find", "zoe", "--json"}, 0))[0]["id"], 77001);
    std::vector<std::string> written;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(home)) {
        if (!entry.is_regular_file() || entry.file_size() == 0)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        for (const char *secret : {"secret-token", "Zoe", "Quill", "41.4375"})
            EXPECT_THAT(bytes, Not(HasSubstr(secret))) << entry.path();
        written.push_back(entry.path().filename());
    }
    EXPECT_THAT(
        written,
        testing::UnorderedElementsAre(
            "RosterHistory.json", "ContactLog.json", "WidgetSnapshot.json",
            "WidgetSnapshotV2.json"));
    call({"defaults", "write", "RememberRosterHistory", "NO"}, 0);
    call({"privacy", "forget-contacts"}, 0);
    EXPECT_FALSE(std::filesystem::exists(home / "Ellwynd" / "RosterHistory.json"));
    EXPECT_FALSE(std::filesystem::exists(home / "Ellwynd" / "ContactLog.json"));
    canvas.plan(
        QStringLiteral("/api/v1/courses/4021/students/submissions"),
        {{.headers = {{"Link", R"(<https://elsewhere.example/>; rel="next")"}}}});
    EXPECT_THAT(
        json::parse(call({"roster", "4021", "--json"}, 0))["notes"].dump(),
        HasSubstr("The list of submissions is incomplete"));
    EXPECT_THAT(allMessages, HasSubstr("\nThe list of submissions is incomplete"));
    canvas.token = "another";
    call({"courses"}, 1);
    EXPECT_EQ(filesIn(directories::widgetContainer()), 2);
    call({"disconnect"}, 0);
    EXPECT_EQ(filesIn(directories::widgetContainer()), 0);
    EXPECT_EQ(json::parse(call({"status", "--json"}, 0))["state"], "not connected");
    call({"courses"}, 3);
    Log::setSink(nullptr);

    EXPECT_THAT(allMessages, HasSubstr("Canvas rejected the access token."));
    for (const char *secret : {"secret-token", "Zoe", "77001"})
        EXPECT_THAT(allMessages, Not(HasSubstr(secret)));
    std::size_t files = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        if (!entry.is_regular_file())
            continue;
        ++files;
        const std::string bytes =
            folder.read(std::filesystem::relative(entry.path(), folder.path()));
        for (const char *secret : {"secret-token", "Zoe", "77001"})
            EXPECT_THAT(bytes, Not(HasSubstr(secret))) << entry.path();
    }
    EXPECT_GT(files, 0U);
}

} // namespace
} // namespace ellwynd::cli
