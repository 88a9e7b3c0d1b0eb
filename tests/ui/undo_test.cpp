// Notes over the windows, and undoing from them.
#include "support/mainwindow.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "ui/support/thresholdeditors.h"
#include "windowtexts.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

struct UndoWindowTest : test::CourseWindowTest {
    UndoWindowTest() { window.activateWindow(); }

    [[nodiscard]] UndoStack &undo() { return controller.undoStack(); }
    /// The text of the menu item, and its accessible texts for screen readers.
    [[nodiscard]] std::string command() const {
        for (const auto *candidate : window.findChildren<QAction *>()) {
            if (candidate->shortcut() == QKeySequence(QKeySequence::Undo))
                return candidate->isEnabled() ? candidate->text().toStdString() : "";
        }
        return "none";
    }
    static StatusNotes &notesOf(const QWidget &where) { return *where.findChild<StatusNotes *>(); }
    static QPushButton &undoButton(const QWidget &where) {
        return *notesOf(where).findChild<QPushButton *>();
    }
};

TEST_F(UndoWindowTest, AContactMarkIsUndoneExactly) {
    const auto before = contact(5004);
    ASSERT_TRUE(before) << "the sample college has a contact with this student";
    table().setFocus();
    table().selectStudents({{900101, 5004}});
    const std::string name = table().selectedRows().front().name;
    const QRect place = table().geometry();
    QTest::keyClick(&window, Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_NE(contact(5004), before);
    EXPECT_EQ(note(), "Marked " + name + " as contacted.");
    EXPECT_EQ(command(), "&Undo Mark " + name + " as Contacted");
    EXPECT_EQ(
        undoButton(window).accessibleName().toStdString(), "Undo Mark " + name + " as Contacted");
    EXPECT_EQ(notesOf(window).accessibleName().toStdString(), note());
    QApplication::processEvents();
    EXPECT_EQ(table().geometry(), place);
    EXPECT_TRUE(table().hasFocus());
    EXPECT_TRUE(window.rect().contains(notesOf(window).geometry()));
    const auto *label = notesOf(window).findChild<QLabel *>();
    EXPECT_LT(label->height(), 2 * label->fontMetrics().height()) << "one line is enough";

    undoButton(window).setFocus();
    notesOf(window).expire();
    EXPECT_NE(note(), "") << "it stays while it has the focus";
    QTest::keyClick(&undoButton(window), Qt::Key_Space);
    EXPECT_EQ(contact(5004), before);
    EXPECT_EQ(note(), "Undone: Mark " + name + " as Contacted.");
    EXPECT_TRUE(table().hasFocus());
    EXPECT_FALSE(undoButton(window).isVisible());
    EXPECT_EQ(command(), "");
    notesOf(window).expire();
    EXPECT_EQ(note(), "");
    EXPECT_EQ(window.accessibleDescription(), QString());
}

TEST_F(UndoWindowTest, ContactMarksAreRemovedAndRestored) {
    const auto before = core.stores.contacts.records();
    QAction *remove = action("Remove Contact Mark");
    table().selectStudents({{900101, 5005}});
    ASSERT_FALSE(contact(5005));
    EXPECT_FALSE(remove->isEnabled());
    action("Mark as Contacted")->trigger();
    EXPECT_TRUE(remove->isEnabled());
    table().selectStudents({{900101, 5005}, {900101, 5004}, {900101, 5006}});
    remove->trigger();
    EXPECT_EQ(contact(5005), std::nullopt);
    EXPECT_EQ(contact(5004), std::nullopt);
    EXPECT_FALSE(remove->isEnabled());
    EXPECT_EQ(command(), "&Undo Remove Contact Marks of 2 Students");
    // The keys work wherever no text is edited.
    table().setFocus();
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(core.stores.contacts.records(), before);
}

TEST_F(UndoWindowTest, AClickOnTheContactRemovesTheMark) {
    QWidget *rows = table().viewport();
    const auto cellOf = [&](std::int64_t student) {
        table().selectStudents({{900101, student}});
        const QModelIndex selected = table().selectionModel()->selectedRows().front();
        return table().visualRect(selected.siblingAtColumn(RosterModel::contacted));
    };
    const QPoint inside(appearance.px(16), appearance.px(16));
    QTest::mouseClick(rows, Qt::LeftButton, {}, cellOf(5001).topLeft() + inside);
    EXPECT_EQ(contact(5001), std::nullopt) << "there is no mark to remove";

    const auto before = contact(5004);
    const QRect cell = cellOf(5004);
    const QPoint date = cell.topLeft() + inside;
    const QPoint beside(cell.right() - 2, date.y());
    QTest::mouseClick(rows, Qt::LeftButton, {}, beside);
    QTest::mouseClick(rows, Qt::LeftButton, Qt::ControlModifier, date);
    QTest::mousePress(rows, Qt::LeftButton, {}, beside);
    QTest::mouseRelease(rows, Qt::LeftButton, {}, date);
    EXPECT_EQ(contact(5004), before);
    QTest::mouseClick(rows, Qt::LeftButton, {}, date);
    EXPECT_EQ(contact(5004), std::nullopt);
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(contact(5004), before);
}

TEST_F(UndoWindowTest, TypingIsUndoneInItsField) {
    table().selectStudents({{900101, 5001}});
    action("Mark as Contacted")->trigger();
    action("Find Student")->trigger();
    auto *filter = window.roster()->findChild<QLineEdit *>();
    QTest::keyClicks(filter, QStringLiteral("iris"));
    QTest::keyClick(filter, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(filter->text(), QString());
    EXPECT_TRUE(contact(5001));
}

TEST_F(UndoWindowTest, ANoteEndsWithItsStep) {
    table().selectStudents({{900101, 5001}});
    action("Mark as Contacted")->trigger();
    controller.actions().openGrades(900101, 5002);
    EXPECT_THAT(note(), testing::HasSubstr("invented"));
    EXPECT_FALSE(undoButton(window).isVisible());
    action("Mark as Contacted")->trigger();
    EXPECT_TRUE(undoButton(window).isVisible());
    controller.connectionDidChange();
    EXPECT_EQ(note(), "");
    EXPECT_EQ(command(), "") << "another account's students";
    undo().undo();
    EXPECT_TRUE(contact(5001));
}

TEST_F(UndoWindowTest, AThresholdsSheetIsOneStep) {
    ThresholdsSheet *sheet = window.openThresholds();
    ASSERT_NE(sheet, nullptr);
    auto *own = sheet->findChildren<QCheckBox *>().first();
    auto *passing = sheet->findChild<ThresholdEditor *>();
    EXPECT_FALSE(passing->isEnabled());
    own->click();
    EXPECT_TRUE(passing->isEnabled());
    EXPECT_EQ(defaults.object("Course.900101.PassingScore"), PreferenceValue(70.0));
    passing->setValue(84.5);
    EXPECT_EQ(controller.roster().thresholds->passingScore, 84.5);
    EXPECT_NE(button(window, "Thresholds: Custom"), nullptr);
    sheet->close();
    EXPECT_THAT(command(), testing::StartsWith("&Undo Change Thresholds of CS 101"));
    undo().undo();
    EXPECT_EQ(defaults.object("Course.900101.PassingScore"), std::nullopt);
    EXPECT_EQ(command(), "");

    courseSettings::set(defaults, 900101, courseSettings::passingScore, 61.0);
    courseSettings::set(defaults, 900101, courseSettings::inactivityDays, std::int64_t{3});
    sheet = window.openThresholds();
    button(*sheet, "Use Defaults")->click();
    EXPECT_FALSE(sheet->findChildren<QCheckBox *>().first()->isChecked());
    EXPECT_EQ(defaults.object("Course.900101.PassingScore"), std::nullopt);
    sheet->close();
    undo().undo();
    EXPECT_EQ(controller.roster().thresholds->passingScore, 61);
    EXPECT_EQ(controller.roster().thresholds->inactivityDays, 3);
}

TEST_F(UndoWindowTest, IconsAndCopiedSetupsAreUndone) {
    action("Icon…")->trigger();
    auto *icon = window.findChild<IconSheet *>();
    icon->findChildren<QRadioButton *>().at(1)->click();
    icon->accept();
    EXPECT_EQ(courseIcon(defaults, 900101).icon, "code");
    EXPECT_THAT(note(), testing::StartsWith("Changed the icon of CS 101"));
    undo().undo();
    EXPECT_TRUE(defaults.persistentDomain().empty());

    action("Copy Course Setup…")->trigger();
    auto *sheet = window.findChild<CopySetupSheet *>();
    PreferenceEdit edit;
    edit.add(defaults, defaults.update({{"Course.900101.PassingScore", 61.0}}));
    Q_EMIT sheet->setupDidChange("CS 101", edit);
    EXPECT_EQ(note(), "Copied the setup of CS 101.");
    undo().undo();
    EXPECT_TRUE(defaults.persistentDomain().empty());
    Q_EMIT sheet->setupDidChange("CS 101", {});
    EXPECT_EQ(note(), "Copied the setup of CS 101.");
    EXPECT_EQ(command(), "") << "it was the same setup";
}

TEST_F(UndoWindowTest, TheSettingsWindowShowsItsOwnNotes) {
    const ContactLog &contacts = core.stores.contacts;
    const auto records = contacts.records();
    const auto entries = core.stores.history.entries();
    SettingsWindow &settings = window.settings();
    settings.open(SettingsWindow::privacy);
    ASSERT_TRUE(test::until([&] { return settings.isActiveWindow(); }));
    auto deletions = settings.findChildren<QPushButton *>();
    deletions.removeIf(
        [](const auto *each) { return each->text() != QStringLiteral("Delete This History"); });
    ASSERT_EQ(deletions.size(), 2);
    const auto nameOf = [&](int index) { return deletions[index]->accessibleName().toStdString(); };
    EXPECT_TRUE(
        test::says(settings, contactsStatus(contacts) + " " + contactsContents(contacts) + "."));
    const std::string start = "Delete This History: ";
    EXPECT_THAT(
        nameOf(0),
        MatchesRegex(start + "levels of [0-9]+ students in 3 courses. [0-9]+ days recorded."));
    EXPECT_THAT(
        nameOf(1),
        MatchesRegex(start + "[0-9]+ contacts in [0-9]+ courses?. [0-9]+ students recorded."));
    deletions[0]->click();
    EXPECT_EQ(notesOf(settings).text(), QStringLiteral("Deleted the history of levels."));
    deletions[1]->click();
    EXPECT_EQ(notesOf(settings).text(), QStringLiteral("Deleted the history of contacts."));
    EXPECT_EQ(note(), "");
    EXPECT_EQ(nameOf(1), start + "Nothing recorded.");
    undoButton(settings).click();
    QTest::keyClick(&settings, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(contacts.records(), records);
    EXPECT_EQ(core.stores.history.entries(), entries);
    EXPECT_EQ(notesOf(settings).text(), QStringLiteral("Undone: Delete History of Levels."));
}

struct ThresholdEditorTest : test::MainWindowTest {
    /// The values saved for the default passing score, in order.
    std::vector<double> saved;
    std::shared_ptr<void> observing = defaults.observe([this](std::string_view key) {
        if (key == preferences::defaultPassingScore.name)
            saved.push_back(defaults.value(preferences::defaultPassingScore));
    });

    /// Types a value, and leaves the editor.
    static void type(QWidget *editor, const char *text) {
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, QString::fromUtf8(text));
        QTest::keyClick(editor, Qt::Key_Return);
    }
};

TEST_F(ThresholdEditorTest, TypedValuesAreRoundedBeforeTheyAreSaved) {
    window.settings().open(SettingsWindow::riskThresholds);
    const auto editors = window.settings().findChildren<ThresholdEditor *>();
    for (const char *text : {"72.3", "72.7", "99.8"})
        type(editors[0], text);
    EXPECT_THAT(saved, ElementsAre(72.5, 100)) << "72.7 is 72.5 too";
    type(editors[1], "9");
    EXPECT_EQ(
        defaults.object(preferences::defaultInactivityDays.name), PreferenceValue(std::int64_t{9}));
    controller.undoStack().undo();
    controller.undoStack().undo();
    EXPECT_THAT(saved, ElementsAre(72.5, 100, 72.5)) << "each is a step";
}

TEST_F(ThresholdEditorTest, ASavedValueOutsideTheRangeIsShownAndKept) {
    struct Row {
        double passing;
        const char *shown;
        /// After a key press upward.
        double above;
    };
    for (const Row &each :
         {Row{120, "120.0 %", 100}, Row{-4, "-4.0 %", 0}, Row{72.25, "72.25 %", 73},
          Row{0.1 + 0.2, "0.30000000000000004 %", 1}}) {
        defaults.set(preferences::defaultPassingScore, each.passing);
        saved.clear();
        window.settings().open(SettingsWindow::riskThresholds);
        auto *editor = window.settings().findChild<ThresholdEditor *>();
        EXPECT_EQ(editor->text().toStdString(), each.shown);
        editor->setFocus();
        QTest::keyClick(editor, Qt::Key_Return);
        window.settings().close();
        EXPECT_TRUE(saved.empty()) << each.shown;
        QTest::keyClick(editor, each.passing > 100 ? Qt::Key_Down : Qt::Key_Up);
        EXPECT_THAT(saved, ElementsAre(each.above));
        EXPECT_EQ(editor->decimals(), 1);
    }
    const std::int64_t aCentury = 3'000'000'000;
    defaults.set(preferences::defaultInactivityDays, aCentury);
    auto *days = window.settings().findChildren<ThresholdEditor *>()[1];
    EXPECT_EQ(days->text(), QStringLiteral("3000000000"));
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_EQ(defaults.value(preferences::defaultInactivityDays), aCentury);
    QTest::keyClick(days, Qt::Key_Down);
    EXPECT_EQ(defaults.value(preferences::defaultInactivityDays), 60);
}

} // namespace
} // namespace ellwynd
