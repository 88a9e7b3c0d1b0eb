#include "support/mainwindow.h"
#include "ui/settings/messagespane.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCompleter>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollArea>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct MessagesPaneTest : test::WindowTest {
    std::filesystem::path folder = core.folder.path();
    TemplateStore store{folder};
    UndoStack undo;
    PreviewStudents students;
    /// A scroll area, as in the settings window.
    std::unique_ptr<QScrollArea> window;

    void SetUp() override {
        window = std::make_unique<QScrollArea>();
        auto *pane = new MessagesPane(
            defaults, store, undo, [this] { return students; }, appearance);
        pane->setObjectName(QStringLiteral("plain"));
        window->setWidget(pane);
        window->setWidgetResizable(true);
        window->resize(520, 620);
        window->show();
        window->activateWindow();
        QApplication::processEvents();
        QTest::keyClick(focus(), Qt::Key_Tab);
    }

    [[nodiscard]] QWidget *focus() const {
        QWidget *widget = window->focusWidget();
        return widget != nullptr ? widget : window.get();
    }

    static std::string nameOf(QWidget *widget) {
        auto *interface = QAccessible::queryAccessibleInterface(widget);
        return interface != nullptr ? interface->text(QAccessible::Name).toStdString() : "";
    }

    /// Presses Tab until the control of that name has the focus.
    void tabTo(const std::string &name) const {
        constexpr int manyControls = 40;
        for (int i = 0; i < manyControls && nameOf(focus()) != name; ++i)
            QTest::keyClick(focus(), Qt::Key_Tab);
        ASSERT_EQ(nameOf(focus()), name);
    }

    void press(const std::string &name) const {
        tabTo(name);
        QTest::keyClick(focus(), Qt::Key_Space);
    }

    void type(const char *text) const { QTest::keyClicks(focus(), QString::fromUtf8(text)); }

    [[nodiscard]] std::vector<std::string> saved() const {
        const TemplateStore again(folder);
        std::vector<std::string> names;
        for (const MessageTemplate &each : again.templates())
            names.push_back(each.name);
        return names;
    }

    [[nodiscard]] QPlainTextEdit *body() const {
        return window->findChildren<QPlainTextEdit *>().at(0);
    }
    [[nodiscard]] std::string preview() const {
        return window->findChildren<QPlainTextEdit *>().at(1)->toPlainText().toStdString();
    }
    /// What is said to be wrong with the template; empty for nothing.
    [[nodiscard]] std::string problems() const {
        for (const QLabel *label : window->findChildren<QLabel *>()) {
            if (label->property("attention").toBool() && label->isVisible())
                return label->text().toStdString();
        }
        return "";
    }
    [[nodiscard]] std::string undoText() const {
        return undo.newest() != nullptr ? undo.newest()->texts.note : "";
    }
};

TEST_F(MessagesPaneTest, WritingATemplateNeedsOnlyTheKeyboard) {
    press("New Template");
    EXPECT_EQ(nameOf(focus()), "Name") << "a new template is named first";
    type("Praise");
    tabTo("Message");
    QTest::keyClick(focus(), Qt::Key_End, Qt::ControlModifier);
    type("Well done in ");
    tabTo("Insert a placeholder");
    // The menu would wait for its own end.
    for (QAction *action : qobject_cast<QPushButton *>(focus())->menu()->actions()) {
        if (action->text().startsWith(QStringLiteral("{course}")))
            action->trigger();
    }
    EXPECT_EQ(nameOf(focus()), "Message") << "the focus returns to the text";
    type("!");
    EXPECT_EQ(preview(), "Hi Robin,\n\nWell done in Example Course!");
    QTest::keyClick(focus(), Qt::Key_Backtab);
    EXPECT_THAT(saved(), ElementsAre("Email", "Short Message", "Referral Summary", "Praise"));
    EXPECT_EQ(
        TemplateStore(folder).templates()[3].body, "Hi {first_name},\n\nWell done in {course}!");
}

TEST_F(MessagesPaneTest, DeletingAndRestoringCanBeUndone) {
    tabTo("Message templates");
    QTest::keyClick(focus(), Qt::Key_Down);
    QTest::keyClick(focus(), Qt::Key_Delete);
    EXPECT_EQ(undoText(), "Deleted “Short Message”.");
    press("Delete");
    EXPECT_EQ(undoText(), "Deleted “Referral Summary”.");
    EXPECT_THAT(saved(), ElementsAre("Email"));
    press("Delete");
    EXPECT_THAT(saved(), ElementsAre());
    EXPECT_FALSE(body()->isEnabled());
    EXPECT_EQ(nameOf(focus()), "New Template");

    undo.undo();
    EXPECT_EQ(window->findChild<QListWidget *>()->currentItem()->text(), QStringLiteral("Email"));
    undo.undo();
    undo.undo();
    EXPECT_THAT(saved(), ElementsAre("Email", "Short Message", "Referral Summary"));
    EXPECT_EQ(undoText(), "");

    tabTo("Message templates");
    QTest::keyClick(focus(), Qt::Key_Home);
    tabTo("Message");
    QTest::keyClick(focus(), Qt::Key_A, Qt::ControlModifier);
    type("Gone?");
    press("Restore Defaults");
    EXPECT_EQ(undoText(), "Restored the default templates.");
    EXPECT_THAT(body()->toPlainText().toStdString(), testing::Not(HasSubstr("Gone?")));
    // In a text field the same keys undo typing.
    tabTo("Message");
    QTest::keyClick(focus(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(undoText(), "");
    undo.undo();
    EXPECT_EQ(body()->toPlainText(), QStringLiteral("Gone?"));
}

TEST_F(MessagesPaneTest, EditsAreSavedWhenTheFocusMovesOrTheWindowCloses) {
    tabTo("Message templates");
    press("Duplicate");
    EXPECT_THAT(saved(), ElementsAre("Email", "Short Message", "Referral Summary", "Email Copy"));
    tabTo("Name");
    QTest::keyClick(focus(), Qt::Key_End);
    type(" 2");
    tabTo("Message templates");
    EXPECT_EQ(saved().back(), "Email Copy 2");

    // Unsaved edits are saved when the window closes.
    tabTo("Message");
    const QString before = body()->toPlainText();
    type("Last words. ");
    // Another process changes another template meanwhile.
    store.update(store.templates()[0].id, "Email", before.toStdString());
    window.reset();
    const std::vector<MessageTemplate> templates = TemplateStore(folder).templates();
    EXPECT_EQ(templates.back().body, "Last words. " + before.toStdString());
    EXPECT_EQ(templates[0].body, before.toStdString());
}

TEST_F(MessagesPaneTest, TextIsKeptExactly) {
    const std::string odd = "Bon\u00A0jour\u00A0!\r\n<b>{name}</b>\n\n";
    store.add(newTemplate("<i>odd</i>\nname", odd, {}));
    auto *list = window->findChild<QListWidget *>();
    list->setCurrentRow(3);
    EXPECT_EQ(list->item(3)->text(), QStringLiteral("<i>odd</i> name"));
    tabTo("Message");
    tabTo("Message templates");
    EXPECT_EQ(store.templates()[3].body, odd) << "focusing the field changes nothing";
    tabTo("Message");
    type("x");
    tabTo("Message templates");
    EXPECT_EQ(store.templates()[3].body, "xBon\u00A0jour\u00A0!\n<b>{name}</b>\n\n");

    // The pane follows the store and keeps its selection.
    (void)store.remove(store.templates()[0].id);
    EXPECT_EQ(list->currentRow(), 2);
    store.update(store.templates()[2].id, "Renamed", "y");
    EXPECT_EQ(list->currentItem()->text(), QStringLiteral("Renamed"));
    EXPECT_EQ(body()->toPlainText(), QStringLiteral("y"));
}

TEST_F(MessagesPaneTest, PlaceholdersAreOfferedWhileTyping) {
    store.add(newTemplate("", "", {}));
    window->findChild<QListWidget *>()->setCurrentRow(3);
    EXPECT_EQ(
        problems(),
        "This template has no name. It is listed as “(no name)”.\n"
        "This template has no text, so there is nothing to copy.");
    tabTo("Message");
    QAbstractItemView *offered = body()->findChild<QCompleter *>()->popup();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(offered->isVisible() ? static_cast<QWidget *>(offered) : body(), key);
    };
    type("Hi {");
    ASSERT_TRUE(offered->isVisible());
    EXPECT_EQ(offered->model()->rowCount(), 9);
    type("m");
    EXPECT_EQ(offered->model()->rowCount(), 3);
    EXPECT_EQ(
        offered->currentIndex().data().toString(),
        QStringLiteral("{missing_count} – how many assignments are missing"));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_FALSE(offered->isVisible());
    EXPECT_EQ(body()->toPlainText(), QStringLiteral("Hi {missing_list}"));
    type(" {s");
    press(Qt::Key_Escape);
    EXPECT_FALSE(offered->isVisible());
    press(Qt::Key_Return);
    EXPECT_EQ(body()->toPlainText(), QStringLiteral("Hi {missing_list} {s\n"));
    type("{Name} {score}{score }");
    EXPECT_FALSE(offered->isVisible());
    EXPECT_THAT(
        problems(), HasSubstr("\nNot a placeholder, so it stays as it is: {Name}, {score }"));
    std::vector<std::string> underlined;
    for (const auto &selection : body()->extraSelections())
        underlined.push_back(selection.cursor.selectedText().toStdString());
    EXPECT_THAT(underlined, ElementsAre("{Name}", "{score }"));
    body()->setPlainText(QString(30'000, u'x'));
    EXPECT_EQ(preview().size(), 20'000 + std::string("…").size());
    // A brace that is closed already is replaced too.
    body()->setPlainText(QStringLiteral("{}"));
    QTest::keyClick(body(), Qt::Key_Right);
    type("fl");
    press(Qt::Key_Tab);
    EXPECT_EQ(body()->toPlainText(), QStringLiteral("{flag}"));
    EXPECT_EQ(problems(), "This template has no name. It is listed as “(no name)”.");
}

TEST_F(MessagesPaneTest, ThePreviewUsesARealStudentIfThereIsOne) {
    const auto title = [this] { return nameOf(window->findChildren<QPlainTextEdit *>().at(1)); };
    EXPECT_EQ(title(), "Preview for Robin Example, an invented student");
    EXPECT_THAT(preview(), HasSubstr("• 2 assignment(s) showing as missing:\n    – Essay 2"));
    students = {
        .all =
            {{.row = {.id = 1, .name = "Ada\nL."}},
             {.row = {.id = 2, .name = "<b>Zoë</b> | Q"}, .courseName = "Bio"}},
        .selected = 1};
    window->hide();
    window->show();
    EXPECT_EQ(title(), "Preview for <b>Zoë</b> | Q");
    // The teacher's choice stays while the roster has that student.
    tabTo("<b>Zoë</b> | Q");
    QTest::keyClick(focus(), Qt::Key_Up);
    EXPECT_EQ(title(), "Preview for Ada L.");
    EXPECT_THAT(preview(), HasSubstr("Hi Ada\nL.,"));
    std::swap(students.all[0], students.all[1]);
    students.selected = 0;
    window->hide();
    window->show();
    EXPECT_EQ(title(), "Preview for Ada L.");
    students = {.all = {students.all[0]}};
    window->hide();
    window->show();
    EXPECT_EQ(title(), "Preview for <b>Zoë</b> | Q");
    EXPECT_THAT(preview(), HasSubstr("Hi <b>Zoë</b>,"));
    EXPECT_THAT(preview(), testing::Not(HasSubstr("missing")));
}

TEST_F(MessagesPaneTest, EveryControlIsReachedByTabAndNotCutOff) {
    for (const double scale : {1.0, 2.0}) {
        defaults.set(preferences::textScale, scale);
        QApplication::processEvents();
        tabTo("Message templates");
        std::vector<std::string> names;
        for (int i = 0; i < 10; ++i) {
            QWidget *control = focus();
            names.push_back(nameOf(control));
            // Nothing is cut off at the sides.
            const int left = control->mapTo(window.get(), QPoint()).x();
            EXPECT_GE(left, 0) << names.back() << scale;
            EXPECT_LE(left + control->width(), window->width()) << names.back() << scale;
            if (qobject_cast<QPushButton *>(control) != nullptr) {
                EXPECT_GE(control->width(), control->minimumSizeHint().width()) << names.back();
            }
            QTest::keyClick(control, Qt::Key_Tab);
            if (focus() == window.get())
                QTest::keyClick(focus(), Qt::Key_Tab);
        }
        EXPECT_THAT(
            names,
            ElementsAre(
                "Message templates", "New Template", "Duplicate", "Delete", "Restore Defaults",
                "Name", "Insert a placeholder", "Message", "Robin Example, an invented student",
                "Preview for Robin Example, an invented student"));
        EXPECT_EQ(nameOf(focus()), names.front());
    }
}

} // namespace
} // namespace ellwynd
