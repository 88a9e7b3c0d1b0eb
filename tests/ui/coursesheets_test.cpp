// The sheets of one course.
#include "app/courses/coursesetup.h"
#include "support/instants.h"
#include "support/mainwindow.h"
#include "theme/courseicon.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/lookbacksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "windowtexts.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QPointer>
#include <QTableView>

namespace ellwynd {
namespace {

using test::CourseWindowTest;
using test::says;
using testing::HasSubstr;

struct CourseSheetsTest : test::WindowTest {
    /// Shows a sheet as the active window, so that it can have the focus.
    template<class SheetType>
    static SheetType *shown(SheetType *sheet) {
        sheet->show();
        sheet->activateWindow();
        QApplication::processEvents();
        return sheet;
    }

    IconSheet *openIcon(const std::string &name = "CS 101") {
        return shown(new IconSheet(7, name, defaults, appearance, nullptr));
    }

    static void press(Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i)
            WindowTest::press(key);
    }

    static std::string focusedName() {
        return QApplication::focusWidget()->accessibleName().toStdString();
    }

    [[nodiscard]] CourseIcon icon() const { return courseIcon(defaults, 7); }
};

TEST_F(CourseSheetsTest, ArrowsChooseAnIconAtOnce) {
    const QPointer<IconSheet> sheet = openIcon();
    ASSERT_EQ(focusedName(), "Subject letters");
    press(Qt::Key_Right);
    EXPECT_EQ(icon().icon, "code");
    press(Qt::Key_Down);
    EXPECT_EQ(icon().icon, "leaf") << "nine per row";
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Automatic colour");
    press(Qt::Key_Right, 4);
    EXPECT_EQ(icon(), (CourseIcon{.icon = "leaf", .color = "teal"}));
    // The preview is the same tile as in the other views.
    const auto labels = sheet->findChildren<QLabel *>();
    const auto preview =
        std::ranges::find(labels, QStringLiteral("Leaf on teal"), &QLabel::accessibleName);
    ASSERT_NE(preview, labels.end());
    EXPECT_EQ(
        (*preview)->pixmap().toImage(),
        courseTile(7, "CS 101", appearance.px(64), 1, icon()).toImage());
    QAccessibleInterface *cell = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
    EXPECT_EQ(cell->role(), QAccessible::RadioButton);
    EXPECT_TRUE(cell->state().checked);
    press(Qt::Key_Return);
    EXPECT_TRUE(!sheet || !sheet->isVisible());
    EXPECT_EQ(icon(), (CourseIcon{.icon = "leaf", .color = "teal"}));
}

TEST_F(CourseSheetsTest, CancelRestoresThePreviousIcon) {
    defaults.set("Course.7.Icon", std::string("from-a-newer-version"));
    openIcon();
    EXPECT_EQ(
        defaults.object("Course.7.Icon"), PreferenceValue(std::string("from-a-newer-version")))
        << "opening the sheet writes nothing";
    press(Qt::Key_Right, 3);
    press(Qt::Key_Tab);
    press(Qt::Key_Right);
    EXPECT_EQ(icon(), (CourseIcon{.icon = "chip", .color = "blue"}));
    press(Qt::Key_Escape);
    EXPECT_EQ(
        defaults.persistentDomain(),
        (PreferenceMap{{"Course.7.Icon", std::string("from-a-newer-version")}}));
}

TEST_F(CourseSheetsTest, UseDefaultForgetsBothAndCanBeCancelled) {
    defaults.set("Course.7.Icon", std::string("gear"));
    defaults.set("Course.7.IconColor", std::string("red"));
    for (const bool cancelled : {true, false}) {
        openIcon("<b>bold</b>");
        ASSERT_EQ(focusedName(), "Gear");
        press(Qt::Key_Tab, 2);
        auto *button = qobject_cast<QPushButton *>(QApplication::focusWidget());
        ASSERT_NE(button, nullptr);
        ASSERT_EQ(button->text(), QStringLiteral("Use Default"));
        press(Qt::Key_Space);
        EXPECT_TRUE(defaults.persistentDomain().empty());
        EXPECT_FALSE(button->isEnabled());
        QTest::keyClick(button->window(), cancelled ? Qt::Key_Escape : Qt::Key_Return);
        EXPECT_EQ(icon().color, cancelled ? "red" : "");
    }
}

const Term fall{.id = 2, .name = "Fall", .startAt = test::at("2026-08-20T00:00:00Z")};
const Term spring{.id = 1, .name = "<i>Spring</i>", .startAt = test::at("2026-01-10T00:00:00Z")};

const std::vector<Course> someCourses{
    {.id = 7, .name = "CS 101 1 - Intro", .term = fall},
    {.id = 5, .name = "<b>ART</b>\n\"1\"", .term = spring},
    {.id = 6, .name = "CS 101 9 - Intro", .term = spring},
    {.id = 4}};

TEST_F(CourseSheetsTest, TheEarlierEditionIsChosenAndCopied) {
    defaults.set("Course.6.PassingScore", 65.0);
    defaults.set("Course.6.Icon", std::string("code"));
    const PreferenceMap before = defaults.persistentDomain();
    auto *sheet = shown(new CopySetupSheet(7, someCourses, defaults, appearance, nullptr));
    std::string from;
    PreferenceEdit edit;
    QObject::connect(
        sheet, &CopySetupSheet::setupDidChange, sheet,
        [&](const std::string &name, const PreferenceEdit &changes) {
            from = name;
            edit = changes;
        });
    auto *list = sheet->findChild<QListWidget *>();
    EXPECT_EQ(QApplication::focusWidget(), list);
    std::vector<std::string> lines;
    for (int row = 0; row < list->count(); ++row)
        lines.push_back(list->item(row)->text().toStdString());
    EXPECT_THAT(
        lines,
        testing::ElementsAre(
            "<i>Spring</i>", "<b>ART</b> \"1\"", "CS 101 9 - Intro — earlier edition",
            "Other courses", "Course 4"));
    auto *copy = sheet->findChildren<QPushButton *>().front();
    ASSERT_EQ(copy->text(), QStringLiteral("Copy Setup"));
    EXPECT_TRUE(says(*sheet, HasSubstr("Passing score 65%, icon.")));
    press(Qt::Key_Down);
    EXPECT_EQ(list->currentItem()->text(), QStringLiteral("Course 4")) << "headings are skipped";
    EXPECT_TRUE(says(*sheet, HasSubstr("follows the defaults")));
    EXPECT_FALSE(copy->isEnabled());
    press(Qt::Key_Up);
    EXPECT_TRUE(copy->isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(from, "CS 101 9 - Intro");
    EXPECT_EQ(courseSetup(defaults, 7), courseSetup(defaults, 6));
    EXPECT_EQ(undoEdit(defaults, edit), UndoResult::all);
    EXPECT_EQ(defaults.persistentDomain(), before);
}

TEST_F(CourseSheetsTest, WithoutAnEarlierCourseThereIsNothingToCopy) {
    auto *sheet =
        shown(new CopySetupSheet(7, {{.id = 7, .name = "CS 101"}}, defaults, appearance, nullptr));
    EXPECT_FALSE(sheet->findChild<QListWidget *>()->isVisible());
    EXPECT_FALSE(sheet->findChildren<QPushButton *>().front()->isEnabled());
    press(Qt::Key_Return);
    EXPECT_TRUE(defaults.persistentDomain().empty());
}

TEST_F(CourseWindowTest, TheLookBackLeadsToAStudent) {
    window.activateWindow();
    QTest::keyClick(&window, Qt::Key_L, Qt::ControlModifier);
    auto *sheet = window.findChild<LookBackSheet *>();
    ASSERT_NE(sheet, nullptr);
    auto *grid = sheet->findChild<QTableView *>();
    EXPECT_EQ(grid->model()->rowCount(), 26);
    const QModelIndex jordan = grid->model()->index(1, grid->model()->columnCount() - 1);
    EXPECT_THAT(test::spokenText(jordan), testing::MatchesRegex("Jordan, .*: At Risk"));
    Q_EMIT grid->activated(jordan);
    EXPECT_THAT(selected(), testing::ElementsAre(5001));
    EXPECT_FALSE(sheet->isVisible());
}

TEST_F(CourseWindowTest, ThresholdsShowWhomTheyWouldFlag) {
    const char *line = "At 60 %: 7 flagged instead of 10.";
    auto *sheet = window.openThresholds();
    sheet->findChild<QCheckBox *>()->click();
    EXPECT_FALSE(says(*sheet, line));
    sheet->findChild<QDoubleSpinBox *>()->setValue(60);
    EXPECT_TRUE(test::until([&] { return says(*sheet, line); }));
    EXPECT_TRUE(says(*sheet, "Now Watch: Nadia, Theo. No longer flagged: Marcus, Iris, Liam."));
    sheet->findChild<QCheckBox *>()->click();
    EXPECT_TRUE(test::until([&] { return !says(*sheet, line); }));
    sheet->accept();
    // In Settings, for all courses in memory.
    SettingsWindow &settings = window.settings();
    settings.open(SettingsWindow::riskThresholds);
    defaults.set(preferences::defaultPassingScore, 60.0);
    const auto effect = [&] { return says(settings, testing::StartsWith("At 60 %: ")); };
    EXPECT_TRUE(test::until(effect));
    defaults.set(preferences::defaultPassingScore, 70.0);
    EXPECT_TRUE(test::until([&] { return !effect(); }));
}

} // namespace
} // namespace ellwynd
