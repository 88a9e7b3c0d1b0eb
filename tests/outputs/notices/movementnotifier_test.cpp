#include "outputs/notices/movementnotifier.h"
#include "support/logcapture.h"
#include "support/memorynotifications.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;

const CourseMovement bio{.courseID = 4021, .courseName = "Bio", .worseStudentIDs = {1, 2}};
const CourseMovement chem{.courseID = 4022, .courseName = "Chem", .worseStudentIDs = {1}};

struct MovementNotifierTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {{"MovementNotifications", true}}};
    test::MemoryNotifications system;
    bool active = false;
    MovementNotifier notifier{defaults, system, [this] { return active; }};
    test::LogCapture log;

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (const UserNotice &notice : system.posted)
            all.push_back(notice.title);
        return all;
    }
};

TEST(MovementTexts, BodiesNameCourses) {
    const auto named = [](std::string name) {
        return CourseMovement{.courseName = std::move(name), .worseStudentIDs = {7, 8}};
    };
    const std::string nearlyFull(254, 'x');
    std::string cats;
    for (int i = 0; i < 255; ++i)
        cats += "🐈";
    for (const auto &[what, courses, body] :
         std::vector<std::tuple<const char *, std::vector<CourseMovement>, std::string>>{
             {"a single course has no count", {bio}, "Bio"},
             {"several have counts", {bio, chem}, "Bio (2) · Chem (1)"},
             {"markup is literal", {named("<b>R&amp;D</b>")}, "<b>R&amp;D</b>"},
             {"no line breaks", {named("a\r\nb\tc\u2028d\u0085e\x7f")}, "a  b c d e "},
             {"no reordering", {named("\u202A\u202E\u2066\u2069x"), chem}, "x (2) · Chem (1)"},
             {"other scripts and directional marks", {named("א\u200F 1")}, "א\u200F 1"},
             {"no null characters", {named(std::string("a\0b", 3))}, "a b"},
             {"the maximum length", {named(std::string(255, 'x'))}, std::string(255, 'x')},
             {"too long", {named(std::string(10'000, 'x'))}, std::string(255, 'x') + "…"},
             {"cut before a pair", {named(nearlyFull + "🐈xx")}, nearlyFull + "…"},
             {"too long, with surrogate pairs", {named(cats)}, cats.substr(0, 127 * 4) + "…"}})
        EXPECT_EQ(movementBody(courses), body) << what;
}

TEST_F(MovementNotifierTest, ANoticeAboutOneCourseOpensIt) {
    notifier.notify({bio, {.courseID = 4023, .courseName = "Calm"}});
    notifier.notify({{.courseID = 4022, .courseName = "Chem", .worseStudentIDs = {1, 1}}});
    ASSERT_THAT(
        titles(),
        ElementsAre("2 students newly need attention", "1 student newly needs attention"));
    EXPECT_EQ(system.posted[0].body, "Bio");
    EXPECT_EQ(system.posted[0].courseID, 4021);
    EXPECT_NE(system.posted[0].identifier, system.posted[1].identifier);
    for (const UserNotice &notice : system.posted)
        EXPECT_THAT(notice.identifier, testing::StartsWith("movement-"));

    std::vector<std::optional<std::int64_t>> opened;
    QObject::connect(
        &notifier, &MovementNotifier::openRequested, &notifier,
        [&](std::optional<std::int64_t> courseID) { opened.push_back(courseID); });
    system.observer(system.posted[0]);
    system.observer({.identifier = "movement-x"});
    EXPECT_THAT(opened, ElementsAre(4021, std::nullopt));
}

TEST_F(MovementNotifierTest, StudentsCountOnceUntilTheirCourseIsOpened) {
    notifier.notify({});
    notifier.notify({bio});
    notifier.notify({bio});
    EXPECT_EQ(system.posted.size(), 1U);
    // The same id in another course counts separately.
    notifier.notify({{.courseID = 4021, .courseName = "Bio", .worseStudentIDs = {2, 3}}, chem});
    EXPECT_EQ(system.posted.back().title, "2 students newly need attention");
    EXPECT_EQ(system.posted.back().body, "Bio (1) · Chem (1)");
    EXPECT_EQ(system.posted.back().courseID, std::nullopt);
    notifier.forget(4021);
    notifier.forget(1);
    notifier.notify({bio, chem});
    EXPECT_EQ(system.posted.back().title, "2 students newly need attention");
    EXPECT_EQ(system.posted.back().body, "Bio");
    EXPECT_EQ(system.posted.size(), 3U);
    notifier.forgetAll();
    notifier.notify({bio, chem});
    EXPECT_EQ(system.posted.size(), 4U) << "the students of another account";
}

TEST_F(MovementNotifierTest, SettingsDecideWhetherANoticeIsPosted) {
    struct Row {
        const char *what;
        /// The preferences that are on.
        std::vector<const char *> on;
        bool active;
        bool posts;
        /// Whether the students are counted.
        bool counts;
    };
    constexpr auto notices = "MovementNotifications";
    constexpr auto whileActive = "NotifyWhileActive";
    constexpr auto sample = "SampleData";
    constexpr auto sampleNotices = "SampleNotifications";
    for (const Row &row : std::vector<Row>{
             {"off by default", {}, false, false, false},
             {"on", {notices}, false, true, true},
             {"in front", {notices}, true, false, true},
             {"in front, enabled", {notices, whileActive}, true, true, true},
             {"in the background, enabled in front", {notices, whileActive}, false, true, true},
             {"sample college", {notices, sample}, false, false, false},
             {"sample college, enabled", {notices, sample, sampleNotices}, false, true, true},
             {"sample college, off", {sample, sampleNotices}, false, false, false}}) {
        PreferenceMap settings;
        for (const char *key : row.on)
            settings[key] = true;
        UserDefaults chosen(folder.path() / "Row.json", settings);
        test::MemoryNotifications shown;
        bool inFront = row.active;
        MovementNotifier one(chosen, shown, [&] { return inFront; });
        one.notify({bio});
        EXPECT_EQ(shown.posted.size(), row.posts ? 1U : 0U) << row.what;
        inFront = false;
        shown.posted.clear();
        one.notify({bio});
        EXPECT_TRUE(shown.posted.empty()) << row.what;
        one.forget(4021);
        one.notify({bio});
        EXPECT_EQ(shown.posted.size(), row.counts ? 1U : 0U) << row.what;
    }
}

TEST_F(MovementNotifierTest, NoticesThatAreNotShownAreLoggedAndNotRetried) {
    system.status = UserNotifications::AuthorizationStatus::denied;
    notifier.notify({bio});
    system.status = UserNotifications::AuthorizationStatus::authorized;
    notifier.notify({bio});
    system.failure = "The server is full";
    notifier.notify({chem});
    system.failure.clear();
    notifier.notify({chem});
    EXPECT_TRUE(system.posted.empty());
    EXPECT_THAT(
        test::LogCapture::lines(),
        ElementsAre(
            "notify: Movement notification skipped: not authorized",
            "notify: Movement notification failed: The server is full"));
}

TEST_F(MovementNotifierTest, TheSystemMayAnswerLate) {
    system.slow = true;
    notifier.notify({bio});
    notifier.notify({bio, chem});
    EXPECT_TRUE(system.posted.empty());
    // Whether the program is in front is checked when the notice would be shown.
    active = true;
    system.answer();
    EXPECT_TRUE(system.posted.empty());
    active = false;
    notifier.forget(4022);
    notifier.notify({chem});
    system.answer();
    EXPECT_THAT(titles(), ElementsAre("1 student newly needs attention"));

    auto destroyed = std::make_unique<MovementNotifier>(defaults, system, [] { return false; });
    destroyed->notify({bio});
    destroyed.reset();
    system.answer();
    EXPECT_EQ(system.posted.size(), 1U);
}

TEST_F(MovementNotifierTest, WithoutASessionBusNoticesAreNotAuthorised) {
    const auto desktop = makeUserNotifications();
    MovementNotifier silent(defaults, *desktop, [] { return false; });
    silent.notify({bio});
    EXPECT_THAT(
        test::LogCapture::lines(),
        ElementsAre("notify: Movement notification skipped: not authorized"));
}

} // namespace
} // namespace ellwynd
