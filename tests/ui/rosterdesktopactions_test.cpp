#include "support/mainwindow.h"
#include "ui/details/studentdetails.h"
#include "ui/settings/settingswindow.h"
#include "ui/support/savepanel.h"

#include <QClipboard>
#include <QFileDialog>
#include <QMenu>
#include <QMimeData>
#include <QStandardPaths>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using RosterDesktopActionsTest = test::CourseWindowTest;

TEST_F(RosterDesktopActionsTest, TheMenuCopiesMessagesForTheSelectedStudents) {
    QMenu *copy = nullptr;
    for (QMenu *menu : window.findChildren<QMenu *>()) {
        if (menu->title() == QStringLiteral("&Copy Message About Student"))
            copy = menu;
    }
    ASSERT_NE(copy, nullptr);
    table().clearSelection();
    EXPECT_FALSE(copy->isEnabled());
    table().selectStudents({{900101, 5002}, {900101, 5003}});
    Q_EMIT copy->aboutToShow();
    ASSERT_EQ(copy->actions().size(), 3);
    copy->actions()[2]->trigger();
    EXPECT_THAT(
        QApplication::clipboard()->text().toStdString(),
        testing::AllOf(testing::StartsWith("Sam — CS 101"), HasSubstr("\n\nPriya — CS 101")));
    EXPECT_EQ(note(), "Copied 2 messages, one below the other. Send each to its own student.");
    EXPECT_EQ(
        QApplication::clipboard()->mimeData()->data(QStringLiteral("x-kde-passwordManagerHint")),
        QByteArray("secret"));
    EXPECT_TRUE(controller.roster().outreach.contains({900101, 5002}));
    EXPECT_THAT(selected(), testing::UnorderedElementsAre(5002, 5003)) << "the selection is kept";
    // The details pane also acts on all selected students.
    auto *details = window.findChild<StudentDetails *>();
    table().selectStudents({{900101, 5004}, {900101, 5005}});
    button(*details, "Mark as Contacted")->click();
    EXPECT_TRUE(controller.roster().outreach.contains({900101, 5004}));
    EXPECT_TRUE(controller.roster().outreach.contains({900101, 5005}));
    defaults.set(preferences::rememberContacts, false);
    table().selectStudents({{900101, 5001}, {900101, 5003}});
    EXPECT_FALSE(button(*details, "Mark as Contacted")->isEnabled());
    EXPECT_FALSE(action("Open Grades in Canvas")->isEnabled()) << "one student at a time";
    defaults.remove(preferences::rememberContacts.name);
    EXPECT_TRUE(button(*details, "Mark as Contacted")->isEnabled());
    while (!core.stores.templates.templates().empty())
        static_cast<void>(
            core.stores.templates.remove(core.stores.templates.templates().front().id));
    Q_EMIT copy->aboutToShow();
    ASSERT_EQ(copy->actions().size(), 1);
    EXPECT_EQ(copy->actions()[0]->text(), QStringLiteral("No templates — add one in Settings"));
    copy->actions()[0]->trigger();
    EXPECT_TRUE(window.settings().isVisible());
}

TEST_F(RosterDesktopActionsTest, TheDetailsAreRebuiltWhileTheirMenuIsOpen) {
    table().selectStudents({{900101, 5006}});
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QString copyMessage = QStringLiteral("Copy Message ▾");
    QPushButton *copy = button(window, copyMessage);
    copy->setFocus();
    QMenu *menu = copy->menu();
    menu->popup({});
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_TRUE(controller.roster().outreach.contains({900101, 5006}));
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(QApplication::focusWidget(), button(window, copyMessage));
}

TEST_F(RosterDesktopActionsTest, TheExportIsSavedToTheChosenFile) {
    action("Export Roster as CSV…")->trigger();
    auto *panel = window.findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    EXPECT_THAT(
        panel->selectedFiles().first().toStdString(), HasSubstr("/Ellwynd — CS 101  4021 - "));
    const auto file = core.folder.path() / "roster.csv";
    Q_EMIT panel->fileSelected(QString::fromStdString(file.string()));
    panel->close();
    EXPECT_EQ(core.folder.read("roster.csv").substr(0, 13), "Risk,Student,");
    EXPECT_EQ(note(), "Saved roster.csv.");
    action("Export Roster as Markdown…")->trigger();
    panel = window.findChildren<QFileDialog *>().last();
    EXPECT_EQ(panel->directory().path().toStdString(), core.folder.path().string());
    panel->close();
}

TEST_F(RosterDesktopActionsTest, TheFolderOfTheLastExportIsRememberedWhileItExists) {
    const test::TemporaryFolder last;
    const auto folder = [this] {
        QWidget owner;
        QFileDialog *panel = savePanel(
            {.title = {},
             .type = QStringLiteral("text/csv"),
             .suffix = {},
             .fileName = "Course \"1\" & \"2\".csv"},
            defaults, owner);
        const std::string opened = panel->directory().path().toStdString();
        EXPECT_THAT(
            panel->selectedFiles(),
            ElementsAre(panel->directory().filePath(QStringLiteral("Course '1' & '2'.csv"))))
            << "quotes would split the name";
        Q_EMIT panel->fileSelected(panel->directory().filePath(QStringLiteral("a.csv")));
        return opened;
    };
    const std::string documents =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
    std::filesystem::create_directories(documents);
    EXPECT_EQ(folder(), documents);
    defaults.set(preferences::exportFolder, last.path().string());
    EXPECT_EQ(folder(), last.path().string());
    EXPECT_EQ(defaults.value(preferences::exportFolder), last.path().string());
    defaults.set(preferences::exportFolder, std::string("/does/not/exist"));
    EXPECT_EQ(folder(), documents);
}

} // namespace
} // namespace ellwynd
