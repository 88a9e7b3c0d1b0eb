#include "app/find/findcontents.h"
#include "app/find/findindex.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t biology = 7;
constexpr std::int64_t chemistry = 8;

FindEntry student(
    std::int64_t id, const char *name, std::optional<RiskLevel> level = {},
    std::int64_t course = biology, const char *sortableName = "") {
    FindEntry entry{
        .kind = FoundKind::student,
        .title = name,
        .detail = course == biology ? "Biology" : "Chemistry",
        .level = level,
        .id = id,
        .courseID = course};
    if (*sortableName != '\0')
        entry.otherNames.emplace_back(sortableName);
    return entry;
}

std::vector<std::int64_t> ids(const std::vector<FindEntry> &entries) {
    std::vector<std::int64_t> result;
    for (const FindEntry &entry : entries)
        result.push_back(entry.id.value_or(0));
    return result;
}

TEST(FindIndex, FindsBeginningsOfWordsAndInitials) {
    const FindIndex index({
        student(1, "Ada Lovelace", {}, biology, "Lovelace, Ada"),
        student(2, "José Ángel Núñez", {}, biology, "Núñez, José Ángel"),
        student(3, "Siobhán O'Brien-Ladd"),
        student(4, "عائشة الزهراء"),
        student(5, "山田太郎"),
        student(6, "김 지수"),
        student(7, "<b>Bob</b> & Co"),
        student(8, ""),
        student(9, "Søren Łukasiewicz"),
        student(10, "Zoe\u0308 Weiß"),
        student(11, "\u202eEvil\u202c 😀"),
        student(12, "Alan Ann Ray"),
        student(13, "\xff\xfe"),
    });
    for (const auto &[typed, found] :
         std::vector<std::pair<const char *, std::vector<std::int64_t>>>{
             {"ada lo", {1}},     {"  lo   ada ", {1}}, {"lovelace, ada", {1}},
             {"al", {12, 1}}, // a beginning before initials
             {"a l", {1}},    // in any order, but each word once
             {"ada ada", {}},     {"ovelace", {}},      {"an al", {12}},
             {"a al an", {}}, // Alan and Ann are the only words with A
             {"jose nunez", {2}}, {"JOSÉ ÁN", {2}},     {"obrien", {3}},
             {"o’br", {3}},       {"brien", {3}},       {"ladd", {3}},
             {"الز", {4}},        {"太郎", {5}},        {"郎山", {}},
             {"김지", {}},        {"수", {6}},          {"bob", {7}},
             {"</b>", {7, 3}},    {"soren luk", {9}},   {"SØREN", {9}},
             {"zoe weiss", {10}}, {"evil", {11}},       {"😀", {11}},
             {"-", {}},           {"\xff", {}}})
        EXPECT_EQ(ids(index.find(typed)), found) << typed;
}

TEST(FindIndex, OrdersByMatchThenByNeed) {
    const FindIndex index({
        student(1, "Ray Ana", RiskLevel::watch),
        student(2, "Ana", std::nullopt),
        student(3, "Ana Ray", std::nullopt),
        student(4, "Anabel Cole", RiskLevel::watch),
        student(5, "Anabel Dahl", RiskLevel::atRisk),
        student(6, "Al Nox Ames", RiskLevel::atRisk),
        student(7, "Bo Ray", std::nullopt, biology, "Anand, Bo"),
        {.kind = FoundKind::command, .title = "Ana", .id = 0},
        {.kind = FoundKind::term, .title = "Ana Term", .id = 20},
        {.kind = FoundKind::course, .title = "Ana Term", .id = 21, .courseID = 21},
    });
    EXPECT_THAT(ids(index.find("ana")), ElementsAre(2, 0, 5, 4, 3, 21, 20, 1, 7, 6));
    EXPECT_THAT(ids(index.find("ray a")), ElementsAre(1, 3, 7));
    EXPECT_THAT(ids(index.find("a r")), ElementsAre(3, 1, 7));
}

TEST(FindIndex, OrdersCoursesByTheirTerms) {
    const auto course = [](std::int64_t id, const char *title, const char *beginsAt) {
        return FindEntry{
            .kind = FoundKind::course,
            .title = title,
            .id = id,
            .courseID = id,
            .beginsAt = parseInstant(beginsAt)};
    };
    const FindIndex index(
        {course(1, "PHP 1", "2025-01-09T00:00:00Z"), course(2, "PHP 2", "2026-08-20T00:00:00Z"),
         course(3, "PHP 0", ""), course(4, "PHP 3", "2026-08-20T00:00:00Z")});
    EXPECT_THAT(ids(index.find("php")), ElementsAre(2, 4, 1, 3));
}

TEST(FindIndex, TellsEqualNamesApartByTheCourse) {
    const FindIndex index(
        {student(2, "Ana Ray", {}, chemistry), student(1, "Ana Ray"), student(2, "Ana Ray")});
    const std::vector<FindEntry> found = index.find("ana");
    EXPECT_THAT(ids(found), ElementsAre(1, 2, 2));
    EXPECT_EQ(found[1].detail, "Biology");
    EXPECT_EQ(found[2].detail, "Chemistry");
}

TEST(FindIndex, ReturnsTheBestOfManyAndSuggestionsForABlankQuery) {
    std::vector<FindEntry> many;
    for (std::int64_t id = 1; id <= 200; ++id)
        many.push_back(student(id, id == 200 ? "Ray" : "Ray Ana"));
    const FindIndex index(std::move(many), {student(9, "Worst"), student(8, "Next")});
    const std::vector<FindEntry> found = index.find("ray");
    EXPECT_EQ(found.size(), FindIndex::mostResults);
    EXPECT_EQ(found.front().id, 200);
    EXPECT_EQ(found[1].id, 1);
    EXPECT_THAT(ids(index.find(" \t")), ElementsAre(9, 8));
    EXPECT_THAT(FindIndex().find(""), IsEmpty());
    EXPECT_THAT(FindIndex().find("a"), IsEmpty());
}

TEST(FindIndex, ComparesWholeNamesBeforeBeginnings) {
    const FindIndex index(
        {student(1, "Ana", {}, biology, "Ana"), student(2, "Ana Ray", {}, biology, "Ray, Ana"),
         student(3, "Ána"), student(4, "Roy Ray")});
    for (const auto &[name, found] :
         std::vector<std::pair<const char *, std::vector<std::int64_t>>>{
             {"ana", {1, 3}},
             {"ray, ana", {2}},
             {"an", {1, 3, 2}},
             {"ray", {2, 4}},
             {"rr", {}}, // initials
             {"-", {}}})
        EXPECT_EQ(ids(index.named(name)), found) << name;
}

/// The marked parts of a title, in brackets.
std::string marked(const std::string &title, const char *typed) {
    const QString text = QString::fromStdString(title);
    QString result;
    qsizetype at = 0;
    for (const MatchedPart &part : foundParts(title, typed)) {
        const auto begin = qsizetype(part.begin);
        result += text.mid(at, begin - at) + u'[' + text.mid(begin, qsizetype(part.length)) + u']';
        at = begin + qsizetype(part.length);
    }
    return (result + text.mid(at)).toStdString();
}

TEST(FindIndex, MarksWhatMatched) {
    for (const auto &[title, typed, expected] :
         std::vector<std::tuple<const char *, const char *, const char *>>{
             {"Ada Lovelace", "lo AD", "[Ad]a [Lo]velace"},
             {"Ada Lovelace", "al", "[A]da [L]ovelace"},
             {"Ada Lovelace", "x", "Ada Lovelace"},
             {"Siobhán O'Brien", "obr", "Siobhán [O'Br]ien"},
             {"Siobhán O'Brien", "brien", "Siobhán O'[Brien]"},
             {"Zoe\u0308 Weiß", "zoe weis", "[Zoe\u0308] [Weiß]"},
             {"😀 Ada", "ad", "😀 [Ad]a"},
             {"山田太郎", "太", "山田[太]郎"},
             {"Ann Anna", "anna ann", "[Ann] [Anna]"},
         })
        EXPECT_EQ(marked(title, typed), expected) << typed;
}

TEST(FindContents, AreTheCoursesTheirTermsAndTheStudentsInMemory) {
    const Term fall{.id = 3, .name = "Fall"};
    const Course course{
        .id = biology, .name = "BIO 1  4021 - Cells\nand Genes", .courseCode = "X9", .term = fall};
    const Course unread{.id = chemistry, .name = "Chemistry", .courseCode = "CH-2", .term = {}};
    ScoredCourse scored = scoreCourse(
        course, {{.userID = 5, .user = EnrolledUser{5, "Ada\tLovelace", "Byron, Ada"}}}, {}, {}, {},
        {});
    RosterCache cache;
    cache.store(std::make_shared<const ScoredCourse>(std::move(scored)));
    ScoredCourse gone;
    gone.course.id = 99;
    gone.rows = {{.id = 6, .name = "Ada Gone"}};
    cache.store(std::make_shared<const ScoredCourse>(std::move(gone)));
    const FindIndex index(entriesOf({course, unread}, cache));

    const std::vector<FindEntry> ada = index.find("byron");
    ASSERT_EQ(ada.size(), 1U);
    EXPECT_EQ(ada[0].title, "Ada\tLovelace") << "as in Canvas";
    EXPECT_EQ(ada[0].detail, "BIO 1  4021 - Cells\nand Genes");
    EXPECT_EQ(ada[0].courseID, biology);
    EXPECT_EQ(index.find("ada").size(), 1U) << "a course that is no longer in the list";
    for (const char *name : {"x9", "bio 1 4021", "cells and genes"}) {
        const std::vector<FindEntry> found = index.named(name);
        ASSERT_EQ(found.size(), 1U) << name;
        EXPECT_EQ(found[0].kind, FoundKind::course);
        EXPECT_EQ(found[0].detail, "Fall");
    }
    EXPECT_EQ(index.named("ch-2").front().courseID, chemistry);
    EXPECT_EQ(index.find("fall").front().kind, FoundKind::term);
    EXPECT_EQ(index.find("other cour").front().id, std::nullopt);
    EXPECT_THAT(suggestionsOf(nullptr), IsEmpty());
}

TEST(FindContents, SuggestTheFirstStudentsWhoNeedTheTeacher) {
    std::vector<DashboardStudent> students;
    for (std::int64_t id = 20; id > 0; --id) {
        const RiskRow row{.id = id, .name = "S", .level = RiskLevel::watch, .courseID = biology};
        students.push_back({.row = std::make_shared<const RiskRow>(row), .courseCode = "B"});
    }
    DashboardTerm term;
    term.students = students;
    EXPECT_THAT(
        ids(suggestionsOf(&term)), ElementsAre(20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9));
}

} // namespace
} // namespace ellwynd
