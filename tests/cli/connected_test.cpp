// The command line from connecting to signing out, with a real secret service
// (support/with-keyring) and a Canvas server on loopback.
#include "base/date.h"
#include "commandline.h"
#include "platform/folders/directories.h"
#include "support/fakecanvas.h"
#include "support/logcapture.h"
#include "support/servedcourse.h"

#include <gmock/gmock.h>

#include <fstream>

namespace ellwynd::cli {
namespace {

using nlohmann::json;
using test::coursePath;
using test::LogCapture;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

struct ConnectedTest : CommandLineTest {
    LogCapture log;
    const std::filesystem::path home = qgetenv("HOME").toStdString();

    /// Adds to the log what the command prints on its standard error.
    [[nodiscard]] Outcome call(const std::string &line, int status = 0) const {
        Outcome outcome = CommandLineTest::call(line);
        EXPECT_EQ(outcome.status, status) << line << ": " << outcome.err;
        LogCapture::lines().push_back(outcome.err);
        return outcome;
    }

    [[nodiscard]] json document(const std::string &line) const {
        return json::parse(call(line + " --json").out);
    }

    /// The names of the files below a folder, which contain none of these texts. Locks are empty
    /// and left out.
    static std::vector<std::string>
    filesWithout(const std::vector<std::string> &secrets, const std::filesystem::path &folder) {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (!entry.is_regular_file() || entry.file_size() == 0)
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            for (const std::string &secret : secrets)
                EXPECT_THAT(bytes, Not(HasSubstr(secret))) << entry.path();
            names.push_back(entry.path().filename());
        }
        return names;
    }
};

TEST_F(ConnectedTest, TheTokenAppearsInNoFileAndNoOutput) {
    test::trustAuthority();
    test::FakeCanvas canvas;
    const std::string start = formatInstant(systemNow() - std::chrono::hours(240));
    test::serveScores(canvas, 4021, 0);
    canvas.serve(
        QStringLiteral("/api/v1/courses"),
        {R"({"id":4021,"name":"Bio","term":{"id":9,"name":"Now","start_at":")" +
         QByteArray::fromStdString(start) + R"("}})"});
    canvas.serve(
        coursePath(4021, "enrollments"),
        {R"({"user_id":77001,"user":{"id":77001,"name":"Zoe Quill"},"grades":{"current_score":41.4375}})"});

    input = "secret-token\n";
    EXPECT_EQ(call("connect " + canvas.address()).out, "Connected as Ana Ruiz\n");
    EXPECT_EQ(document("status")["state"], "connected");
    EXPECT_EQ(document("courses")[0]["name"], "Bio");
    const json row = document("roster 4021")["rows"][0];
    EXPECT_EQ(row["name"], "Zoe Quill");
    EXPECT_EQ(row["level"], "At Risk");
    EXPECT_THAT(call("thresholds 4021 --passing 40").out, HasSubstr("40% passing"));
    EXPECT_EQ(document("roster 4021")["rows"][0]["level"], nullptr);

    // A contact is recorded by id, only with --note, and not with one that is refused.
    const std::string message = "message 4021 --template 'Referral Summary' --student 77001";
    (void)call("contacted 4021 77001 1", 1);
    (void)call(message + " --student 1 --note", 1);
    const auto contacts = directories::data() / "ContactLog.json";
    EXPECT_FALSE(std::filesystem::exists(contacts));
    EXPECT_EQ(
        call("-RememberContacts NO contacted 4021 77001", 1).err,
        "Contact marks are turned off in Settings.\n");
    (void)call(message);
    EXPECT_THAT(call("roster 4021 --csv").out, EndsWith(",never,,,\n"));
    EXPECT_EQ(call(message + " --note").out, "Zoe Quill — Bio\nCurrent score: 41% (passing 40%)\n");
    EXPECT_THAT(
        call("roster 4021 --csv").out,
        ContainsRegex(",never,,[0-9]{4}-[0-9]{2}-[0-9]{2},no change\n$"));
    // A contact that cannot be saved is a failure.
    std::filesystem::rename(contacts, home / "elsewhere");
    std::filesystem::create_symlink("ContactLog.json", contacts);
    for (const std::string &line : {std::string("contacted 4021 77001"), message + " --note"})
        EXPECT_THAT(call(line, 1).err, EndsWith("The change couldn't be saved.\n"));
    std::filesystem::rename(home / "elsewhere", contacts);
    // A visit, and what is computed from it.
    EXPECT_EQ(document("privacy")["history"], "Nothing recorded.");
    (void)call("roster 4021 --visit");
    (void)call("contacted 4021 77001");
    const json student = document("student 4021 77001");
    EXPECT_EQ(student["outreach"], "Wrote today — not flagged");
    EXPECT_EQ(student["story"], nullptr);
    EXPECT_EQ(document("privacy")["history"], "1 day recorded.");
    EXPECT_EQ(document("dashboard")["headline"], "0 flagged across 1 course");
    (void)call("student 4021 1", 1);
    // Names are compared with what is read anyway.
    const auto requestsOf = [&](const std::string &line) {
        const std::size_t before = canvas.requests.size();
        (void)call(line);
        return canvas.requests.size() - before;
    };
    EXPECT_EQ(requestsOf("student bio quill"), requestsOf("student 4021 77001"));
    EXPECT_EQ(requestsOf("thresholds bio"), requestsOf("thresholds 4021"));
    EXPECT_EQ(document("find zoe")[0]["id"], 77001);
    EXPECT_THAT(
        filesWithout({"secret-token", "Zoe", "Quill", "41.4375"}, home),
        UnorderedElementsAre(
            "RosterHistory.json", "ContactLog.json", "WidgetSnapshot.json",
            "WidgetSnapshotV2.json"));
    (void)call("defaults write RememberRosterHistory NO");
    (void)call("privacy forget-contacts");
    EXPECT_THAT(filesWithout({}, directories::data()), IsEmpty());
    canvas.plan(
        coursePath(4021, "students/submissions"),
        {{.headers = {{"Link", R"(<https://elsewhere.example/>; rel="next")"}}}});
    const Outcome cut = call("roster 4021 --json");
    EXPECT_THAT(
        json::parse(cut.out)["notes"].dump(), HasSubstr("The list of submissions is incomplete"));
    EXPECT_THAT(cut.err, HasSubstr("The list of submissions is incomplete"));
    canvas.token = "another";
    EXPECT_THAT(call("courses", 1).err, HasSubstr("Canvas rejected the access token."));
    EXPECT_THAT(
        filesWithout({}, directories::widgetContainer()),
        UnorderedElementsAre("WidgetSnapshot.json", "WidgetSnapshotV2.json"));
    (void)call("disconnect");
    EXPECT_THAT(filesWithout({}, directories::widgetContainer()), IsEmpty());
    EXPECT_EQ(document("status")["state"], "not connected");
    (void)call("courses", 3);

    EXPECT_THAT(LogCapture::lines(), testing::Contains(HasSubstr("Noted a contact")));
    for (const char *secret : {"secret-token", "Zoe", "77001"})
        EXPECT_THAT(LogCapture::lines(), testing::Each(Not(HasSubstr(secret))));
    EXPECT_THAT(filesWithout({"secret-token", "Zoe", "77001"}, folder.path()), Not(IsEmpty()));
}

} // namespace
} // namespace ellwynd::cli
