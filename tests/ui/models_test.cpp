#include "support/instants.h"
#include "ui/roster/rostermodel.h"
#include "ui/sheets/missingworkmodel.h"
#include "ui/sidebar/sidebarmodel.h"
#include "windowtexts.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

constexpr auto strict = QAbstractItemModelTester::FailureReportingMode::Fatal;

const std::vector<RiskRow> someRows{
    {.id = 1, .name = "zoe", .level = RiskLevel::atRisk},
    {.id = 2,
     .name = "Émile",
     .level = RiskLevel::watch,
     .lastActivityAt = test::noon,
     .reasonLines = {{.text = "1 of 9 assignments missing"}}},
    {.id = 3, .name = "Ana", .currentScore = 66},
    {.id = 4, .name = "<b>Bob</b>"}};

TEST(RosterModel, ShowsTheFoldedStudentsOnOneLine) {
    RosterModel model;
    const QAbstractItemModelTester tester(&model, strict);
    const auto rows = std::make_shared<RosterRows>(RosterView{.courseID = 1, .rows = someRows});
    model.setRoster(rows, {}, test::noon);
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.studentCount(), 2);
    EXPECT_TRUE(model.isFold(2));
    EXPECT_EQ(model.index(2, 0).data().toString().toStdString(), "2 students without a flag");
    EXPECT_FALSE(model.flags(model.index(2, 0)).testFlag(Qt::ItemIsSelectable));
    EXPECT_EQ(
        test::spokenText(model.index(1, RosterModel::student)),
        "Émile. 1 of 9 assignments missing");
    model.setQuery({.chip = RosterChip::everyone});
    EXPECT_EQ(model.rowCount(), 4);
    EXPECT_FALSE(model.isFold(3));
    for (int column = 0; column < RosterModel::columns; ++column)
        EXPECT_NE(RosterModel::sortOf(column), RosterSort::worstFirst);
}

TEST(MissingWorkModel, DescribesItsRows) {
    MissingWorkModel model(
        {{.id = 1, .name = "Essay", .studentIDs = {1, 2, 3}, .rosterSize = 4, .isClassWide = true},
         {.id = 2, .name = "Quiz", .studentIDs = {1}, .rosterSize = 6},
         {.id = 3, .name = "Lab", .studentIDs = {1}, .rosterSize = 3}});
    const QAbstractItemModelTester tester(&model, strict);
    const auto text = [&](int row, int column, int role) {
        return model.index(row, column).data(role).toString().toStdString();
    };
    EXPECT_EQ(text(0, MissingWorkModel::share, Qt::DisplayRole), "75%");
    EXPECT_EQ(text(1, MissingWorkModel::share, Qt::DisplayRole), "17%") << "rounded";
    EXPECT_EQ(text(2, MissingWorkModel::share, Qt::DisplayRole), "33%");
    EXPECT_EQ(text(1, MissingWorkModel::missing, Qt::DisplayRole), "1");
    EXPECT_EQ(text(0, 0, Qt::ToolTipRole), classWideTooltip);
    EXPECT_EQ(text(1, 0, Qt::ToolTipRole), "");
    EXPECT_EQ(
        test::spokenText(model.index(0, 0)),
        "Essay, missing for 3 students, excluded from risk scores");
}

TEST(SidebarModel, FindsWhatIsSelected) {
    std::map<std::int64_t, LevelCounts> levels{{10, {.concern = 1, .watch = 2}}, {12, {}}};
    SidebarModel model([&](std::int64_t id) {
        return levels.contains(id) ? std::optional(levels.at(id)) : std::nullopt;
    });
    const QAbstractItemModelTester tester(&model, strict);
    const std::vector<TermGroup> terms{
        {.term = Term{.id = 1, .name = "Fall"},
         .courses = {Course{.id = 10, .name = "Bio"}, Course{.id = 11}}},
        {.term = std::nullopt, .courses = {Course{.id = 12}}}};
    model.setTerms(terms);
    for (const Selection &selection : std::initializer_list<Selection>{
             CourseSelection{10}, CourseSelection{12}, TermSelection{1}, TermSelection{}}) {
        const QModelIndex index = model.indexOf(selection);
        ASSERT_TRUE(index.isValid());
        EXPECT_EQ(model.selectionAt(index), selection);
    }
    EXPECT_FALSE(model.indexOf(CourseSelection{99}).isValid());
    const QModelIndex bio = model.indexOf(CourseSelection{10});
    EXPECT_EQ(bio.data(SidebarModel::flaggedRole).toInt(), 3);
    EXPECT_EQ(bio.data(SidebarModel::worstLevelRole).toInt(), int(RiskLevel::concern));
    EXPECT_FALSE(model.indexOf(CourseSelection{12}).data(SidebarModel::worstLevelRole).isValid());
    EXPECT_EQ(test::spokenText(bio), "Bio, 3 flagged");
    EXPECT_FALSE(model.indexOf(CourseSelection{11}).data(SidebarModel::flaggedRole).isValid());

    // The same terms again only refresh the counts.
    const QPersistentModelIndex kept = bio;
    std::set<std::int64_t> refreshed;
    QObject::connect(
        &model, &SidebarModel::dataChanged, &model, [&](const auto &first, const auto &last) {
            for (int row = first.row(); row <= last.row(); ++row)
                refreshed.insert(
                    first.siblingAtRow(row).data(SidebarModel::courseIDRole).toLongLong());
        });
    levels = {{10, {.atRisk = 1}}, {11, {.watch = 2}}};
    model.setTerms(terms);
    EXPECT_TRUE(kept.isValid());
    EXPECT_THAT(refreshed, testing::ElementsAre(10, 11, 12));
    const auto badge = [&](std::int64_t id) {
        return model.indexOf(CourseSelection{id}).data(SidebarModel::flaggedRole);
    };
    EXPECT_EQ(badge(10).toInt(), 1);
    EXPECT_EQ(badge(11).toInt(), 2);
    EXPECT_FALSE(badge(12).isValid());
}

} // namespace
} // namespace ellwynd
