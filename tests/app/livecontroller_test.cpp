// The controller against a Canvas server on loopback.
#include "app/connectedtest.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::until;

struct LiveControllerTest : test::ConnectedTest {
    LiveControllerTest() {
        for (const int course : {1, 2, 3})
            test::serveScores(canvas, course, 40);
        // The selection is kept until the list arrives.
        controller.select(TermSelection{9});
    }

    bool untilShown(const std::string &title) const {
        return until([&] {
            return controller.roster().state == RosterView::State::shown &&
                controller.roster().title == title && !controller.isLoading();
        });
    }
};

TEST_F(LiveControllerTest, LoadsTheTermAndACourse) {
    std::vector<std::size_t> progress;
    QObject::connect(&controller, &MainWindowController::loadingDidChange, &controller, [&] {
        const std::size_t loaded = controller.roster().loadedCourses;
        const bool loading = controller.roster().state == RosterView::State::loading;
        if (loading && (progress.empty() || progress.back() != loaded))
            progress.push_back(loaded);
    });
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    EXPECT_EQ(progress, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(controller.status(), "3 courses");
    EXPECT_EQ(controller.roster().rows.size(), 2U);
    controller.select(CourseSelection{3});
    EXPECT_EQ(controller.roster().state, RosterView::State::loading);
    ASSERT_TRUE(untilShown("Chem"));
    EXPECT_EQ(controller.roster().rows[0].id, 31);
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(noteText(controller.roster()), "");
    core.defaults.set(preferences::sidebarTermLimit, std::int64_t{1});
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 2U) << "also those without a term";
}

TEST_F(LiveControllerTest, IncompleteListsAreReported) {
    const test::FakeReply cut{.headers = {{"Link", R"(<https://elsewhere.example/>; rel="next")"}}};
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    canvas.plan(test::coursePath(2, "students/submissions"), {cut, cut});
    controller.select(CourseSelection{2});
    ASSERT_TRUE(until([&] { return !controller.roster().notes.empty(); }));
    const std::string note = "The list of submissions is incomplete: Canvas linked its next page "
                             "to another address, where your token is not sent.";
    EXPECT_EQ(noteText(controller.roster()), note);
    EXPECT_EQ(core.stores.history.entries().size(), 1U) << "recorded as usual";
    controller.select(TermSelection{9});
    EXPECT_EQ(noteText(controller.roster()), "Bio: " + note);

    canvas.plan(
        QStringLiteral("/api/v1/courses"),
        {{.body = R"([{"id":1,"name":"Art"}])", .headers = cut.headers}});
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.status() == "1 course · list incomplete"; }));
}

TEST_F(LiveControllerTest, ACourseRequestedByIdOpensWhenTheListArrives) {
    controller.showCourse(2);
    controller.refresh();
    ASSERT_TRUE(untilShown("Bio"));
    controller.showCourse(99);
    EXPECT_EQ(controller.roster().title, "Bio");
    controller.showCourse(3);
    ASSERT_TRUE(untilShown("Chem"));

    // The dashboard is selected when the selected course is no longer in the list.
    canvas.serve(
        QStringLiteral("/api/v1/courses"),
        {R"({"id":1,"name":"Art","term":{"id":9,"name":"Fall"}})"});
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.selection() == Selection{DashboardSelection{}}; }));
    EXPECT_EQ(controller.roster().state, RosterView::State::nothingSelected);
}

TEST_F(LiveControllerTest, TheThreeReadsOfACourseRunConcurrently) {
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    canvas.holdUntil(3);
    controller.showCourse(2);
    ASSERT_TRUE(untilShown("Bio")) << "no read is answered before all three have started";
}

TEST_F(LiveControllerTest, AFailedRefreshKeepsTheRows) {
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    controller.select(CourseSelection{1});
    ASSERT_TRUE(untilShown("Art"));
    const Date fetched = controller.roster().fetchedAt;
    canvas.plan(test::coursePath(1, "enrollments"), {{.status = 401}});
    controller.refreshRoster();
    ASSERT_TRUE(until([&] { return !controller.roster().staleReason.empty(); }));
    // The roster is shown again, with the threshold and the contact.
    core.defaults.set(preferences::defaultPassingScore, 65.0);
    core.stores.contacts.noteContact(1, controller.roster().rows.front().id, fetched);
    ASSERT_EQ(controller.roster().outreach.size(), 1U);
    EXPECT_EQ(
        noteText(controller.roster()),
        "Canvas rejected the access token. Canvas may have refused access to Art only. Showing "
        "what was loaded before.");
    EXPECT_EQ(controller.roster().rows.size(), 1U);
    EXPECT_EQ(controller.roster().fetchedAt, fetched);
    EXPECT_TRUE(errors.empty());

    canvas.plan(test::coursePath(3, "enrollments"), {{.status = 404}});
    controller.select(CourseSelection{3});
    ASSERT_TRUE(until([&] { return controller.roster().state == RosterView::State::failed; }));
    EXPECT_EQ(errors.back(), CanvasError(CanvasError::Kind::notFound));
}

TEST_F(LiveControllerTest, ARejectedTokenIsReported) {
    canvas.token = "another";
    controller.refresh();
    ASSERT_TRUE(until([&] { return !controller.isLoading(); }));
    EXPECT_FALSE(errors.empty());
    EXPECT_EQ(controller.status(), "Canvas rejected the token");
    canvas.token = "secret-token";
    controller.refresh();
    EXPECT_TRUE(untilShown("Fall"));
}

} // namespace
} // namespace ellwynd
