// Pieces of windows on invented students and courses, with long and unusual names.
#include "pictures.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/details/studentdetails.h"
#include "ui/details/termchart.h"
#include "ui/roster/insightband.h"
#include "ui/roster/rosterpane.h"
#include "ui/support/appearance.h"

namespace ellwynd {

namespace {

/// Flagged students with names that are long, of other scripts, and like markup.
std::vector<RiskRow> unusualRows(int count) {
    const std::vector<const char *> names{
        "Bartholomew Featherstonehaugh-Cholmondeley de la Tour", "עידו כהן", "김 지수",
        "<b>Bob</b>", "Maximilian 😀 von und zu Hohenlohe-Langenburg"};
    std::vector<RiskRow> rows;
    for (int i = 0; i < count; ++i) {
        RiskRow row{
            .id = i + 1,
            .name = names[std::size_t(i) % names.size()],
            .level = allRiskLevels[std::size_t(i) % allRiskLevels.size()],
            .courseID = 1};
        row.reasonLines = {{.text = "3 of 8 assignments missing — 44% of the grade"}};
        rows.push_back(std::move(row));
    }
    return rows;
}

/// A dashboard with that many courses, some with very long names.
void drawCards(
    Pictures &pictures, UserDefaults &defaults, const Appearance &appearance, int courses) {
    Dashboard dashboard(defaults);
    DashboardTerm term{.id = 1, .title = "Fall"};
    const std::string longName = "An Introduction to the Comparative History of Long and Winding "
                                 "Course Names, Section 4021 of Many";
    for (int i = 0; i < courses; ++i) {
        const bool isLong = i % 3 == 1;
        const std::string code = "CS " + std::to_string(100 + i);
        term.cards.push_back(
            {.courseID = i + 1,
             .name = isLong ? longName : code,
             .label = {.name = isLong ? longName : "Computing", .code = code},
             .levels =
                 i % 4 == 0 ? LevelCounts{} : LevelCounts{i * 7 % 120, i * 5 % 90, i * 3 % 60},
             .total = 300,
             .slipped = i % 5,
             .improved = i % 3,
             .awaitingFollowUp = i % 2,
             .trend = {3, 3, i % 7, 9, i % 5},
             .mostMissed = MostMissed{isLong ? term.title + std::string(90, 'x') : "Lab 1", i}});
    }
    std::vector<DashboardStudent> students;
    for (const RiskRow &row : unusualRows(courses == 0 ? 0 : courses == 40 ? 500 : 5))
        students.push_back({.row = std::make_shared<const RiskRow>(row), .courseCode = "CS 101"});
    term.students = std::move(students);
    dashboard.prepareTerms({{.term = Term{.id = 1, .name = "Fall"}, .courses = {}}}, {});
    term.updatedAt = *parseInstant("2026-09-03T05:00:00Z");
    dashboard.termScored(std::move(term));
    DashboardPane pane(dashboard, defaults, appearance);
    pane.resize(1050, 760);
    pane.show();
    pictures.save(pane, "cards-" + std::to_string(courses));
}

void drawLargeRoster(Pictures &pictures, const Appearance &appearance) {
    RosterTable table(appearance);
    table.setRoster(
        {.state = RosterView::State::shown, .courseID = 1, .rows = unusualRows(500)}, {},
        *parseInstant("2026-09-03T05:00:00Z"));
    table.resize(734, 600);
    table.show();
    pictures.save(table, "roster-500");
}

/// A term chart with a gap of 14 days, which is joined, and one of 15, which is not.
void drawTermWithGaps(Pictures &pictures, const Appearance &appearance) {
    using std::chrono::days;
    const Date first = *parseInstant("2026-09-03T05:00:00Z");
    TermChart chart(
        {.points =
             {{first, RiskLevel::watch},
              {first + days(14), RiskLevel::concern},
              {first + days(29), RiskLevel::concern},
              {first + days(31), RiskLevel::atRisk},
              {first + days(36), std::nullopt}}},
        {.wroteAt = first + days(20), .levelDiffers = true, .level = RiskLevel::watch}, appearance);
    chart.resize(chart.sizeHint() * 2);
    pictures.save(chart, "term-with-gaps");
}

/// The details of a new student whose score a rule has raised, and who is flagged elsewhere.
void drawExplained(Pictures &pictures, const Appearance &appearance) {
    RiskRow row{
        .id = 1,
        .name = "Robin",
        .courseName = "CS 101 - Computing",
        .score = 0.5,
        .floor = ScoreFloor::mostWorkMissing,
        .level = RiskLevel::atRisk,
        .currentScore = 74,
        .missingCount = 3};
    row.signals[Signal::missing] = 0.22;
    row.signals[Signal::pastDue] = 0.02;
    row.signals[Signal::grade] = 0;
    row.reasonLines = {{.text = "3 of 5 assignments missing"}};
    StudentDetails details(appearance);
    details.show(
        {row},
        {.isNew = true,
         .otherCourses = {{.courseName = "Web Interface Design", .level = RiskLevel::concern}}});
    details.resize(appearance.px(272), 700);
    details.show();
    pictures.save(details, "explained");
}

/// The whole course insight of a course that lacks some data.
void drawCoverage(Pictures &pictures, const Appearance &appearance) {
    InsightBand band(appearance);
    band.setInsight(
        {.sentences = {"At Risk: 4 now, up from 2 earlier."},
         .outreachLine = "Nobody is flagged.",
         .coverage = {
             {.signal = Signal::missing, .counts = true},
             {.signal = Signal::pastDue, .counts = true},
             {.signal = Signal::time, .note = "Canvas reports no time in course."},
             {.signal = Signal::grade, .counts = true},
             {.signal = Signal::inactivity, .counts = true}}});
    for (const bool collapsed : {false, true}) {
        band.setCollapsed(collapsed);
        band.resize(700, band.sizeHint().height());
        band.show();
        pictures.save(band, collapsed ? "coverage-line" : "coverage");
    }
}

} // namespace

void drawPieces(Pictures &pictures, UserDefaults &defaults, const Appearance &appearance) {
    drawTermWithGaps(pictures, appearance);
    drawExplained(pictures, appearance);
    drawCoverage(pictures, appearance);
    drawLargeRoster(pictures, appearance);
    for (const int courses : {0, 1, 12, 40})
        drawCards(pictures, defaults, appearance, courses);
}

} // namespace ellwynd
