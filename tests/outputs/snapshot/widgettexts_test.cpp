#include "outputs/snapshot/widgettexts.h"
#include "support/snapshots.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::at;
using test::noon;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t manyRows = 100;

std::vector<std::string> labels(const WidgetContent &content) {
    std::vector<std::string> texts;
    for (const WidgetRow &row : content.rows)
        texts.push_back(row.label);
    return texts;
}

TEST(WidgetTexts, ShowTheCountsOfATerm) {
    const WidgetContent content = widgetContent(test::twoTerms(), {}, manyRows, noon);
    EXPECT_EQ(content.message, "");
    EXPECT_EQ(content.attention, "students need attention");
    EXPECT_EQ(content.headline, "7 students need attention in Fall 2026");
    EXPECT_EQ(content.more, "");
    ASSERT_EQ(content.rows.size(), 2U);
    EXPECT_EQ(content.rows[0].summary, "7 flagged");
    EXPECT_EQ(content.rows[0].accessibleText, "Bio, 7 flagged, 4 At Risk, 2 Concern, 1 Watch");
    EXPECT_EQ(content.rows[0].link, "ellwynd://course/4021");
    EXPECT_EQ(content.rows[1].summary, "All OK");
    EXPECT_THAT(content.rows[1].levels, IsEmpty());

    const WidgetContent summer = widgetContent(test::twoTerms(), 10, manyRows, noon);
    EXPECT_EQ(summer.headline, "1 student needs attention in Summer 2026");
    EXPECT_THAT(summer.rows[0].levels, ElementsAre(WidgetLevelCount{WidgetLevel::watch, 1}));
}

TEST(WidgetTexts, FallBackToTheAutomaticTerm) {
    WidgetSnapshotFile file = test::twoTerms();
    file.terms.pop_back();
    EXPECT_EQ(widgetContent(file, 10, manyRows, noon).title, "Fall 2026");
    EXPECT_THAT(
        widgetTermQuery(file),
        ElementsAre(WidgetTermEntity{{}, "Automatic"}, WidgetTermEntity{20, "Fall 2026"}));
    EXPECT_THAT(widgetTermQuery({}), ElementsAre(WidgetTermEntity{{}, "Automatic"}));
    file.automaticTermID = 99;
    const WidgetContent nothing{.message = "Open Ellwynd to load your courses"};
    EXPECT_EQ(widgetContent(file, 98, manyRows, noon), nothing);
    EXPECT_EQ(widgetContent({}, {}, manyRows, noon), nothing);
}

TEST(WidgetTexts, LimitedRowsAreThoseOfTheMostSevereCourses) {
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[0].courses = {
        {.id = 1, .name = "quiet"},
        {.id = 2, .name = "watch", .watch = 9},
        {.id = 3, .name = "risk", .atRisk = 1},
        {.id = 4, .name = "concern", .concern = 3},
        {.id = 5, .name = "also quiet"}};
    const auto shown = [&](std::size_t maxRows) { return widgetContent(file, {}, maxRows, noon); };
    EXPECT_THAT(labels(shown(5)), ElementsAre("quiet", "watch", "risk", "concern", "also quiet"));
    EXPECT_EQ(shown(5).more, "");
    EXPECT_THAT(labels(shown(4)), ElementsAre("quiet", "watch", "risk", "concern"));
    EXPECT_EQ(shown(4).more, "1 more in Ellwynd");
    EXPECT_THAT(labels(shown(2)), ElementsAre("risk", "concern"));
    EXPECT_EQ(shown(2).more, "3 more in Ellwynd");
    EXPECT_THAT(labels(shown(0)), IsEmpty());
    EXPECT_EQ(shown(0).flagged, 13);

    // The number in place of a hidden name is the position in the whole list.
    for (WidgetCourseSummary &course : file.terms[0].courses)
        course.name.reset();
    EXPECT_THAT(labels(shown(2)), ElementsAre("Course 3", "Course 4"));
    EXPECT_TRUE(shown(2).rows[0].nameHidden);
}

TEST(WidgetTexts, AsOfHasTheDayUnlessItIsToday) {
    // Chicago is five hours behind in September and six in January.
    for (const auto &[updatedAt, now, text] :
         std::vector<std::tuple<const char *, const char *, const char *>>{
             {"2026-09-24T12:00:00Z", "2026-09-25T04:59:59Z", "as of 07:00:00"},
             {"2026-09-24T12:00:00Z", "2026-09-25T05:00:00Z", "as of Thu, Sep 24, 07:00:00"},
             {"2026-01-01T05:00:00Z", "2026-01-02T12:00:00Z", "as of Wed, Dec 31, 2025, 23:00:00"},
             // A clock that was set back.
             {"2026-09-25T12:00:00Z", "2026-09-24T12:00:00Z", "as of Fri, Sep 25, 07:00:00"}})
        EXPECT_EQ(asOfText(at(updatedAt), at(now)), text) << updatedAt;
}

TEST(WidgetTexts, NamesAreOneLine) {
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[0].title = "Fall\n2026";
    file.terms[0].courses[0].name = "Bio\r\n\t101";
    const WidgetContent content = widgetContent(file, {}, manyRows, noon);
    EXPECT_EQ(content.title, "Fall 2026");
    EXPECT_EQ(content.rows[0].label, "Bio   101");
    EXPECT_EQ(widgetTermQuery(file)[1].title, "Fall 2026");
}

} // namespace
} // namespace ellwynd
