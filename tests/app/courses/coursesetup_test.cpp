#include "app/courses/coursesetup.h"
#include "risk/coursethresholds.h"
#include "support/instants.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(CourseSetup, AnEditionIsACodeWithoutItsSection) {
    for (const auto &[code, edition] : std::vector<std::pair<const char *, const char *>>{
             {"CS 101 4021", "CS 101"},
             {"cs101-01", "CS 101"},
             {"CS-101", "CS 101"},
             {"CS 101L-02", "CS 101L"},
             {"2026FA-BIO-110.003", "BIO 110"},
             {"Fall 2025 BIO 101", "BIO 101"},
             {"FA25-BIO101", "BIO 101"},
             {"BIO-L 101", "BIO-L 101"},
             {"Section 3 CS 101", "CS 101"},
             {"Sec 02 - MATH 141", "MATH 141"},
             {"S26-CS101", "CS 101"},
             {"PSYC&100 4021", "PSYC 100"},
             {"FA-L 101", "L 101"},
             {"Section 3", "SECTION 3"},
             {"SP 26", "SP 26"},
             {"SP 2610", "SP 2610"},
             {"F 101", "F 101"},
             {"ÉCO 12", "ÉCO 12"},
             {"  Home   room ", "HOME ROOM"},
             {"Homeroom -", "HOMEROOM -"},
             {"101", "101"},
             {" \n", ""},
             {"\xff\xfe 1", "\xEF\xBF\xBD\xEF\xBF\xBD 1"}})
        EXPECT_EQ(editionOf(code), edition) << code;
    // Codes may be of any length.
    EXPECT_EQ(editionOf(std::string(200'000, '-')).size(), 200'000U);
    EXPECT_EQ(editionOf(std::string(200'000, 'a')).size(), 200'000U);
    EXPECT_EQ(subjectAndNumber("CS 101  4021 - Intro to Programming"), "CS 101");
    EXPECT_EQ(subjectAndNumber("Sec 02 - MATH 141: Calculus"), "MATH 141");
    EXPECT_EQ(subjectAndNumber("FALL 2025 CS 101"), "CS 101");
    EXPECT_EQ(subjectAndNumber("Fall 2025"), "") << "a term alone is no course";
    EXPECT_EQ(subjectAndNumber("Introduction to Chemistry 2"), "");
    EXPECT_EQ(subjectAndNumber("101 Dalmatians"), "");
}

const Term fall{.id = 30, .name = "Fall", .startAt = test::at("2026-08-20T00:00:00Z")};
const Term summer{.id = 20, .name = "Summer", .startAt = test::at("2026-06-01T00:00:00Z")};
const Term spring{.id = 25, .name = "Spring", .startAt = test::at("2026-01-10T00:00:00Z")};
const Term undated{.id = 1, .name = "Default"};
const Term laterUndated{.id = 2, .name = "Default 2"};

Course course(
    std::int64_t id, std::optional<Term> term, std::optional<std::string> code,
    std::optional<std::string> name = std::nullopt) {
    return {.id = id, .name = std::move(name), .courseCode = std::move(code), .term = term};
}

template<class... Each>
std::vector<Course> list(const Each &...each) {
    return {each...};
}

TEST(CourseSetup, OffersTheCoursesOfEarlierTermsAndSuggestsTheEarlierEdition) {
    const std::optional<std::int64_t> none;
    const std::optional<std::string> noCode;
    const std::optional<Term> noTerm;
    const Course other = course(90, spring, "ART 1", "ART 1");
    for (const auto &[what, own, others, offers, suggested] : std::vector<std::tuple<
             const char *, Course, std::vector<Course>, std::string, std::optional<std::int64_t>>>{
             {"the newest edition by code", course(1, fall, "CS 101 4021"),
              list(course(2, spring, "CS 101 1"), course(3, summer, "cs-101"), other), "3 2 90 ",
              3},
             {"the code takes precedence over the name", course(1, fall, "CS 101", "BIO 7"),
              list(course(2, summer, "X", "BIO 7"), course(3, spring, "CS101", "Y")), "2 3 ", 3},
             {"by name if there is no code", course(1, fall, noCode, "CS 101  4021 - Intro"),
              list(course(2, spring, "", "cs 101 - Intro"), course(3, summer, noCode)), "3 2 ", 2},
             {"no similar course", course(1, fall, "CS 101"), list(other), "90 ", none},
             {"neither code nor name", course(1, fall, noCode), list(course(2, summer, noCode)),
              "2 ", none},
             {"the same term and later ones are left out", course(1, summer, "CS 101"),
              list(course(2, summer, "CS 101"), course(3, fall, "CS 101"), other), "90 ", none},
             {"courses without a term are offered last", course(1, fall, "CS 101"),
              list(course(2, noTerm, "CS 101"), other), "90 2 ", 2},
             {"all courses are offered to one without a term", course(1, noTerm, "CS 101"),
              list(course(2, fall, "CS 101"), course(3, noTerm, "ART 1")), "2 3 ", 2},
             {"without dates, the smaller term id is the earlier one", course(1, undated, "CS 101"),
              list(course(2, laterUndated, "CS 101"), course(3, fall, "CS 101"), other), "3 90 ",
              3},
             {"a term without a date, for a course of a term with one", course(1, fall, "CS 101"),
              list(course(2, undated, "CS 101")), "2 ", 2},
             {"nothing to offer", course(1, fall, "CS 101"), list(), "", none}}) {
        std::vector<Course> all = others;
        all.insert(all.begin(), own);
        const SetupCandidates candidates = setupCandidates(all, own.id);
        std::string offered;
        for (const TermGroup &group : candidates.terms) {
            for (const Course &each : group.courses)
                offered += std::to_string(each.id) + " ";
        }
        EXPECT_EQ(offered, offers) << what;
        EXPECT_EQ(candidates.suggested, suggested) << what;
    }
    EXPECT_EQ(setupCandidates({other}, 1), SetupCandidates{}) << "the course is not in the list";
}

TEST(CourseSetup, DescribesWhatIsCopied) {
    for (const auto &[setup, text] : std::vector<std::pair<CourseSetup, const char *>>{
             {{.passingScore = 65, .inactivityDays = 10, .icon = {"flask", "teal"}},
              "Passing score 65%, 10 inactivity days, icon, colour"},
             {{.passingScore = 72.5}, "Passing score 72.5%"},
             {{.inactivityDays = 1}, "1 inactivity day"},
             {{.icon = {.icon = "", .color = "teal"}}, "Colour"},
             {{}, ""}})
        EXPECT_EQ(setupText(setup), text);
    EXPECT_THAT(setupSummary({}), testing::HasSubstr("follows the defaults"));
    EXPECT_THAT(setupSummary({.passingScore = 65}), testing::StartsWith("Passing score 65%. "));
}

TEST(CourseSetup, IsCopiedAndUndone) {
    const test::TemporaryFolder folder;
    UserDefaults defaults(folder.path() / "Preferences.json", {});
    defaults.set("Course.1.PassingScore", 65.0);
    defaults.set("Course.1.Icon", std::string("flask"));
    defaults.set("Course.1.IconColor", std::string("plaid"));
    defaults.set("Course.1.InactivityDays", std::string("many"));
    defaults.set("Course.2.PassingScore", 80.0);
    defaults.set("Course.2.InactivityDays", std::int64_t{3});
    const PreferenceMap before = defaults.persistentDomain();

    const PreferenceChanges replaced = copyCourseSetup(defaults, 1, 2);
    const CourseSetup copied{
        .passingScore = 65, .inactivityDays = 3, .icon = {.icon = "flask", .color = ""}};
    EXPECT_EQ(courseSetup(defaults, 2), copied) << "settings that the source lacks are kept";
    EXPECT_FALSE(courseSettings::has(defaults, 2, courseSettings::iconColor));
    defaults.update(replaced);
    EXPECT_EQ(defaults.persistentDomain(), before);

    defaults.update({{"Course.1.InactivityDays", std::int64_t{9}}, {"Course.1.IconColor", "teal"}});
    (void)copyCourseSetup(defaults, 1, 2);
    EXPECT_EQ(courseSetup(defaults, 2), courseSetup(defaults, 1));
    EXPECT_EQ(courseSetup(defaults, 2).inactivityDays, 9);
    EXPECT_EQ(courseSetup(defaults, 2).icon.color, "teal");

    EXPECT_TRUE(copyCourseSetup(defaults, 3, 2).empty());
    EXPECT_EQ(courseSetup(defaults, 3), CourseSetup{});
}

} // namespace
} // namespace ellwynd
