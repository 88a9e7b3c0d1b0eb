#include "support/mainwindow.h"
#include "ui/details/studentdetails.h"
#include "ui/settings/settingswindow.h"
#include "ui/write/writelist.h"
#include "ui/write/writesheet.h"
#include "windowtexts.h"

#include <QClipboard>
#include <QComboBox>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QWindow>

namespace ellwynd {
namespace {

using test::says;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct WriteSheetTest : test::CourseWindowTest {
    void TearDown() override {
        for (WriteSheet *sheet : sheets())
            delete sheet;
    }

    static std::vector<WriteSheet *> sheets() {
        std::vector<WriteSheet *> found;
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (auto *sheet = qobject_cast<WriteSheet *>(each); sheet && sheet->isVisible())
                found.push_back(sheet);
        }
        return found;
    }

    /// Opens the sheet with the keyboard.
    WriteSheet &write(const std::set<std::int64_t> &students) {
        std::set<StudentKey> keys;
        for (const std::int64_t id : students)
            keys.insert({900101, id});
        table().selectStudents(keys);
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        table().setFocus();
        QTest::keyClick(&window, Qt::Key_J, Qt::ControlModifier);
        const auto open = sheets();
        EXPECT_EQ(open.size(), 1U);
        EXPECT_TRUE(QTest::qWaitForWindowActive(open.front()));
        return *open.front();
    }

    static void press(QWidget &sheet, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget *focus = sheet.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &sheet, key, modifiers);
    }

    static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }
    static QPlainTextEdit &editor(QWidget &sheet) { return *sheet.findChild<QPlainTextEdit *>(); }
};

TEST_F(WriteSheetTest, ThreeStudentsNeedFourPressesAndOneLetterEach) {
    const auto before = core.stores.contacts.records();
    WriteSheet &sheet = write({5002, 5003, 5004});
    const SharedList<RiskRow> students = table().selectedRows();
    ASSERT_EQ(students.size(), 3U);
    for (const RiskRow &student : students) {
        EXPECT_EQ(sheet.windowTitle().toStdString(), "Write to " + student.name);
        const std::string shown = editor(sheet).toPlainText().toStdString();
        const auto earlier = contact(student.id);
        press(sheet, Qt::Key_Return);
        EXPECT_EQ(clipboard(), shown) << "the message that was shown";
        for (const RiskRow &other : students)
            EXPECT_EQ(
                clipboard().find("Hi " + other.name) != std::string::npos, &other == &student);
        EXPECT_TRUE(says(sheet, HasSubstr("On the clipboard: the message for " + student.name)));
        EXPECT_NE(contact(student.id), earlier);
    }
    const QMimeData *held = QApplication::clipboard()->mimeData();
    EXPECT_EQ(held->data(QStringLiteral("x-kde-passwordManagerHint")), QByteArray("secret"));
    EXPECT_TRUE(says(sheet, EndsWith("Copied for 3 students")));
    EXPECT_EQ(sheet.focusWidget(), button(sheet, "Done"));
    press(sheet, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(core.stores.contacts.records(), before);
    EXPECT_EQ(sheet.focusWidget(), button(sheet, "Copy and Next"));
    for (int i = 0; i < 4; ++i)
        press(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheets().empty()) << "the last press is Done";
    // The main window has the same step.
    controller.undoStack().undo();
    EXPECT_EQ(core.stores.contacts.records(), before);
    EXPECT_EQ(controller.undoStack().newest(), nullptr);
}

TEST_F(WriteSheetTest, ALetterIsEditedForOneStudent) {
    WriteSheet &sheet = write({5002, 5003});
    auto *choice = sheet.findChild<QComboBox *>();
    choice->setFocus();
    QTest::keyClick(choice, Qt::Key_Down);
    EXPECT_THAT(editor(sheet).toPlainText().toStdString(), StartsWith("Hi Sam — quick"));
    editor(sheet).setFocus();
    QTest::keyClicks(&editor(sheet), QStringLiteral("Dear Sam! "));
    QTest::keyClick(&editor(sheet), Qt::Key_Return);
    EXPECT_THAT(clipboard(), Not(HasSubstr("Dear"))) << "Return is a line break in the message";
    press(sheet, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(clipboard(), StartsWith("Dear Sam! \nHi Sam — quick"));
    EXPECT_THAT(editor(sheet).toPlainText().toStdString(), StartsWith("Hi Priya — quick"));
    QTest::keyClick(&editor(sheet), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(editor(sheet).toPlainText().toStdString(), StartsWith("Hi Priya"))
        << "another student's message does not come back";
    // A choice replaces what was typed, and Undo in the editor brings it back.
    QTest::keyClicks(&editor(sheet), QStringLiteral("Typed. "));
    choice->setFocus();
    QTest::keyClick(choice, Qt::Key_Home);
    EXPECT_THAT(editor(sheet).toPlainText().toStdString(), StartsWith("Subject:"));
    editor(sheet).setFocus();
    QTest::keyClick(&editor(sheet), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(editor(sheet).toPlainText().toStdString(), StartsWith("Typed. Hi Priya"));

    // Closing asks first.
    press(sheet, Qt::Key_Escape);
    auto *question = sheet.findChild<QMessageBox *>();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->informativeText(), QStringLiteral("1 edited message has not been copied."));
    button(*question, "Keep Writing")->click();
    EXPECT_EQ(sheets().size(), 1U);
    window.close();
    EXPECT_TRUE(window.isVisible()) << "the sheet asks before the program ends";
    for (auto *box : sheet.findChildren<QMessageBox *>()) {
        if (box->isVisible())
            button(*box, "Close Without Copying")->click();
    }
    EXPECT_TRUE(sheets().empty());
    // The template that was copied last is the first offered.
    WriteSheet &again = write({5006});
    EXPECT_THAT(editor(again).toPlainText().toStdString(), HasSubstr("quick check-in"));
}

TEST_F(WriteSheetTest, StudentsAreSkippedChosenAddedAndCopiedTogether) {
    WriteSheet &sheet = write({5002, 5003, 5004});
    button(sheet, "Skip")->click();
    EXPECT_EQ(sheet.windowTitle(), QStringLiteral("Write to Priya"));
    auto *list = sheet.findChild<WriteList *>();
    const auto description = [list](int row) {
        return test::spokenText(list->model()->index(row, 0));
    };
    EXPECT_THAT(description(0), AllOf(StartsWith("Sam, "), HasSubstr(", skipped")));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_THAT(description(2), HasSubstr(", copied"));
    EXPECT_EQ(sheet.windowTitle(), QStringLiteral("Write to Priya"));
    // Further students join the ones who are left.
    EXPECT_NE(button(*window.findChild<StudentDetails *>(), "Write to 3 Students"), nullptr);
    table().selectStudents({{900101, 5006}});
    const std::string first = table().selectedRows().front().name;
    button(*window.findChild<StudentDetails *>(), QString::fromStdString("Write to " + first))
        ->click();
    ASSERT_EQ(sheets().size(), 1U);
    EXPECT_EQ(sheet.windowTitle().toStdString(), "Write to " + first);
    EXPECT_EQ(list->model()->rowCount(), 4);
    button(sheet, "Copy All Together")->click();
    EXPECT_TRUE(says(
        sheet, HasSubstr("Copied 2 messages, one below the other. Send each to its own student.")));
    EXPECT_TRUE(says(sheet, EndsWith("Copied for 3 students")));
    EXPECT_TRUE(says(sheet, StartsWith("1 student skipped")));
    EXPECT_THAT(clipboard(), AllOf(HasSubstr("Hi Priya"), HasSubstr("Hi " + first)));
    QApplication::clipboard()->setText(QStringLiteral("of another program"));
    EXPECT_FALSE(says(sheet, HasSubstr("Send each")));
}

TEST_F(WriteSheetTest, ProblemsAreSaidAndNothingIsMarked) {
    TemplateStore &templates = core.stores.templates;
    while (!templates.templates().empty())
        static_cast<void>(templates.remove(templates.templates().front().id));
    WriteSheet &sheet = write({5002});
    const auto before = contact(5002);
    QApplication::clipboard()->setText(QStringLiteral("before"));
    press(sheet, Qt::Key_Return);
    EXPECT_EQ(clipboard(), "before");
    EXPECT_EQ(contact(5002), before);
    EXPECT_TRUE(says(sheet, HasSubstr("The message is empty. Choose another template")));
    button(sheet, "No templates — add one in Settings")->click();
    EXPECT_TRUE(window.settings().isVisible());
    templates.add(newTemplate(" ", "For {name}", {}));
    EXPECT_EQ(sheet.findChild<QComboBox *>()->currentText(), QStringLiteral("(no name)"));
    EXPECT_EQ(editor(sheet).toPlainText(), QStringLiteral("For Sam"));
    window.settings().close();
    controller.connectionDidChange();
    EXPECT_TRUE(sheets().empty()) << "another account's students";
}

TEST_F(WriteSheetTest, ItStaysBesideTheBrowser) {
    std::vector<RiskRow> students(500, {.name = "<b>Bo</b>\n<img src=x>"});
    for (RiskRow &student : students)
        student.id = &student - students.data();
    for (const double scale : {1.0, 2.0}) {
        defaults.set(preferences::textScale, scale);
        defaults.remove(preferences::writeWindowGeometry.name);
        window.resize(900, 600);
        WriteSheet &sheet = *window.openWriteSheet(students);
        EXPECT_LT(sheet.width(), 900) << scale;
        EXPECT_LT(sheet.height(), 600) << scale;
        EXPECT_EQ(sheet.windowHandle()->transientParent(), nullptr);
        EXPECT_FALSE(sheet.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        EXPECT_EQ(sheet.windowModality(), Qt::NonModal);
        EXPECT_EQ(sheet.windowTitle(), QStringLiteral("Write to <b>Bo</b> <img src=x>"));
        // Beside the browser it is narrow.
        sheet.resize(appearance.px(320), appearance.px(480));
        QApplication::processEvents();
        const auto *list = sheet.findChild<WriteList *>();
        EXPECT_LT(list->geometry().bottom(), editor(sheet).mapTo(&sheet, QPoint()).y());
        for (const QWidget *control : sheet.findChildren<QPushButton *>()) {
            if (control->isVisible()) {
                EXPECT_TRUE(
                    sheet.rect().contains(QRect(control->mapTo(&sheet, QPoint()), control->size())))
                    << control->accessibleName().toStdString() << scale;
            }
        }
        delete &sheet;
    }
}

} // namespace

} // namespace ellwynd
