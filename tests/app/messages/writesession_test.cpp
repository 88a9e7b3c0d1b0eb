#include "app/messages/lasttemplates.h"
#include "app/messages/messagetexts.h"
#include "app/messages/writesession.h"
#include "support/instants.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::row;

struct WriteSessionTest : testing::Test {
    test::TemporaryFolder folder;
    /// The contacts of a sample run are held in memory.
    UserDefaults defaults{folder.path() / "Preferences.json", {{"SampleData", true}}};
    Stores stores{defaults, folder.path(), [] { return clock; }};
    UndoStack undo;
    /// The clipboard; absent while another program holds it.
    std::optional<std::string> clipboard = "";
    std::unique_ptr<WriteSession> session;

    static inline Date clock = test::noon;

    WriteSessionTest() {
        clock = test::noon;
        while (!stores.templates.templates().empty())
            static_cast<void>(stores.templates.remove(stores.templates.templates().front().id));
        stores.templates.add(newTemplate("Hello", "Hi {name}", clock));
        stores.templates.add(newTemplate("Score", "{score}", clock));
        open({row(1, "At Risk"), row(2, "Watch"), row(3, "")});
    }

    void open(const std::vector<RiskRow> &rows) {
        session = std::make_unique<WriteSession>(
            rows, defaults, stores, undo,
            [this](const std::string &text) {
                if (clipboard)
                    clipboard = text;
                return clipboard.has_value();
            },
            [] { return clock; });
    }

    [[nodiscard]] std::string templateID(std::size_t index) const {
        return stores.templates.templates()[index].id;
    }

    /// By its letter; a digit shows that student.
    const std::map<char, std::function<void()>> actions{
        {'c', [this] { session->copyAndNext(); }},
        {'s', [this] { session->skip(); }},
        {'a', [this] { session->copyAll(); }},
        {'u', [this] { undo.undo(); }},
        {'f', [this] { session->finish(); }},
        {'e', [this] { session->edit("Dear " + session->currentStudent()->row.name); }},
        {'t', [this] { session->chooseTemplate(templateID(1)); }},
        {'h', [this] { clipboard.reset(); }},
        // Another mark of the first student.
        {'m', [this] {
             undo.push(
                 {.texts = {}, .undo = [this, change = stores.contacts.noteContact(7, 1, clock)] {
                      return undoResult(stores.contacts.undo(change), 1);
                  }});
         }}};

    void perform(std::string_view letters) {
        for (const char letter : letters) {
            if (const auto found = actions.find(letter); found != actions.end())
                found->second();
            else
                session->setCurrent(std::size_t(letter - '1'));
            clock += std::chrono::seconds(1);
        }
    }

    /// "C>-S" for a student who was copied, one who is shown and waits, and one who was skipped; a
    /// student whose contact is recorded has an apostrophe.
    [[nodiscard]] std::string state() const {
        std::string text;
        for (std::size_t i = 0; i < session->students().size(); ++i) {
            const WriteSession::Student &student = session->students()[i];
            text += session->current() == i ? ">" : "";
            text += "-CS"[int(student.progress)];
            text += stores.contacts.lastContact(7, student.row.id) ? "'" : "";
        }
        return text;
    }
};

TEST_F(WriteSessionTest, EachActionChangesOnlyWhatItShould) {
    // Whose messages were copied last: "1d3" for the first student and, as it was edited, the
    // third;
    // "!" while another program holds the clipboard.
    for (const auto &[letters, expected, lastCopied, expectedSteps] :
         std::vector<std::tuple<const char *, const char *, std::string, std::size_t>>{
             {"", ">---", "", 0},
             {"ccc", "C'C'C'", "3", 1},
             {"cccu", ">---", "3", 0},
             {"cc", "C'C'>-", "2", 2},
             {"ccu", "C'>--", "2", 1},
             {"ccuc", "C'C'>-", "2", 2},
             {"ccucc", "C'C'C'", "3", 1},
             {"ccuu", ">---", "2", 0},
             {"ccf", "C'C'>-", "2", 1},
             {"ccfu", ">---", "2", 0},
             {"s", "S>--", "", 0},
             {"ssss", "SSS", "", 0},
             {"cscu", ">-S-", "3", 0},
             {"sc1c", "C'C'>-", "1", 2},
             {"3c", ">--C'", "3", 1},
             {"2cc", ">-C'C'", "3", 2},
             {"c1c", "C'>--", "1", 2},
             {"c1cu", ">-'--", "1", 1},
             {"c1cccu", ">---", "3", 0},
             {"c9", "C'>--", "1", 1},
             {"a", "C'C'C'", "123", 1},
             {"au", ">---", "123", 0},
             {"csa", "C'SC'", "3", 1},
             {"aa", "C'C'C'", "123", 1},
             {"cccc", "C'C'C'", "3", 1},
             // Another change in between stays what it is.
             {"cmcc", "C'C'C'", "3", 3},
             {"cmccu", "C'>--", "3", 2},
             {"cmccuu", "C'>--", "3", 1},
             {"mcccu", ">-'--", "3", 1},
             // Edited messages are copied as they were edited.
             {"ec", "C'>--", "d1", 1},
             {"e2ea", "C'C'C'", "d1d23", 1},
             {"ecu", ">---", "d1", 0},
             {"ecuc", "C'>--", "d1", 1},
             {"e2t1c", "C'>--", "d1", 1},
             // Nothing is copied without a text, or without the clipboard.
             {"tc", ">---", "", 0},
             {"ta", ">---", "", 0},
             {"teac", "C'>--", "d1", 1},
             {"hc", ">---", "!", 0},
             {"ha", ">---", "!", 0},
             {"chc", "C'>--", "1!", 1},
         }) {
        undo.clear();
        stores.contacts.deleteAll();
        defaults.remove(preferences::lastTemplates.name);
        clipboard = "";
        open({row(1, "At Risk"), row(2, "Watch"), row(3, "")});
        perform(letters);
        std::vector<std::string> names;
        std::optional<std::string> text = "";
        const char *greeting = "Hi ";
        for (const char copied : lastCopied) {
            if (copied == '!') {
                text.reset();
            } else if (copied == 'd') {
                greeting = "Dear ";
            } else {
                names.push_back(std::string("Student ") + copied);
                *text += (text->empty() ? "" : "\n\n") + (greeting + names.back());
                greeting = "Hi ";
            }
        }
        EXPECT_EQ(state(), expected) << letters;
        EXPECT_EQ(session->onClipboard(), names) << letters;
        EXPECT_EQ(clipboard, text) << letters;
        std::size_t steps = 0;
        for (; undo.newest() != nullptr; undo.dropNewest())
            ++steps;
        EXPECT_EQ(steps, expectedSteps) << letters;
    }
}

TEST_F(WriteSessionTest, UndoingRestoresTheEarlierContact) {
    const Date before = clock - std::chrono::days(30);
    stores.contacts.noteContact(7, 1, before);
    EXPECT_EQ(session->outreach()->daysSince, 30);
    perform("c1ccc");
    EXPECT_EQ(session->current(), std::nullopt);
    EXPECT_EQ(session->outreach(), std::nullopt);
    EXPECT_TRUE(session->canUndo());
    EXPECT_EQ(undo.newest()->texts.name, "Mark 3 Students as Contacted");
    EXPECT_EQ(undo.newest()->texts.note, "Copied for 3 students");
    // One of them is written to again, which is kept.
    stores.contacts.noteContact(7, 2, clock);
    undo.undo();
    EXPECT_FALSE(session->canUndo());
    EXPECT_EQ(stores.contacts.lastContact(7, 1)->contactedAt, before);
    EXPECT_EQ(stores.contacts.lastContact(7, 2)->contactedAt, clock);
    EXPECT_EQ(stores.contacts.lastContact(7, 3), std::nullopt);
    // The session may be gone when its step is undone.
    perform("c");
    session.reset();
    undo.undo();
    EXPECT_EQ(stores.contacts.lastContact(7, 1)->contactedAt, before);
}

TEST_F(WriteSessionTest, WithoutContactMarksMessagesAreStillCopied) {
    defaults.set(preferences::rememberContacts, false);
    perform("ccc");
    EXPECT_EQ(state(), "CCC");
    EXPECT_FALSE(session->canUndo());
    EXPECT_EQ(undo.newest(), nullptr);
}

TEST_F(WriteSessionTest, TheTemplateIsTheChosenOneOrTheLastOfTheCourse) {
    RiskRow other = row(4, "Watch");
    other.courseID = 8;
    other.currentScore = 61.5;
    open({row(1, "Watch"), other, row(2, "Watch")});
    const auto name = [this] { return session->message() ? session->message()->name : "none"; };
    EXPECT_EQ(name(), "Hello");
    session->setCurrent(1);
    session->chooseTemplate(templateID(1));
    EXPECT_EQ(session->text(), "62%");
    perform("c");
    EXPECT_EQ(name(), "Score") << "it is chosen for the students who follow";
    EXPECT_EQ(lastTemplates::of(defaults, 8), templateID(1));
    EXPECT_EQ(lastTemplates::of(defaults, 7), "");
    session->setCurrent(1);
    session->chooseTemplate(templateID(0));
    session->setCurrent(2);
    session->setCurrent(1);
    EXPECT_EQ(session->text(), "Hi Student 4");
    session->chooseTemplate("unknown");
    EXPECT_EQ(name(), "Hello");

    open({row(1, "Watch"), other});
    EXPECT_EQ(name(), "Hello");
    session->setCurrent(1);
    EXPECT_EQ(name(), "Score") << "the last one of this course";
    session->edit("My own words");
    static_cast<void>(stores.templates.remove(templateID(1)));
    EXPECT_EQ(name(), "Hello") << "it was deleted";
    EXPECT_EQ(session->text(), "My own words");
    static_cast<void>(stores.templates.remove(templateID(0)));
    EXPECT_EQ(name(), "none");
    session->setCurrent(0);
    EXPECT_EQ(session->text(), "");
    EXPECT_EQ(session->copyAndNext(), WriteSession::CopyResult::empty);
    session->edit("Without a template");
    EXPECT_EQ(session->copyAndNext(), WriteSession::CopyResult::copied);
    EXPECT_EQ(clipboard, "Without a template");
    for (const char *damaged : {"[]", "{", R"({"7":5})"}) {
        defaults.set(preferences::lastTemplates, std::string(damaged));
        EXPECT_EQ(lastTemplates::of(defaults, 7), "") << damaged;
    }
    lastTemplates::save(defaults, {7, 8}, "x");
    EXPECT_EQ(defaults.value(preferences::lastTemplates), R"({"7":"x","8":"x"})");
}

TEST_F(WriteSessionTest, MoreCopiesThanTheStackKeepsAreOneStep) {
    std::vector<RiskRow> rows;
    for (std::int64_t id = 1; id <= 150; ++id)
        rows.push_back(row(id, "Watch"));
    open(rows);
    stores.contacts.deleteAll();
    while (session->current())
        session->copyAndNext();
    EXPECT_EQ(stores.contacts.records().size(), 150U);
    undo.undo();
    EXPECT_TRUE(stores.contacts.records().empty());
    EXPECT_EQ(undo.newest(), nullptr);
}

TEST_F(WriteSessionTest, StudentsAreAddedOnce) {
    perform("c");
    session->edit("Changed");
    session->add({row(1, "At Risk"), row(9, "Watch"), row(3, "")});
    EXPECT_EQ(state(), "C'-->-");
    EXPECT_EQ(session->currentStudent()->row.id, 9);
    session->add({row(2, "Watch")});
    EXPECT_EQ(session->text(), "Changed");
    EXPECT_EQ(session->uncopiedEdits(), 1U);
    session->edit("Hi Student 2");
    EXPECT_EQ(session->uncopiedEdits(), 0U) << "it is the template's text again";
    open({});
    EXPECT_EQ(session->currentStudent(), nullptr);
    session->add({row(5, "")});
    EXPECT_EQ(session->currentStudent()->row.id, 5);
}

TEST_F(WriteSessionTest, TooMuchTextIsNotCopiedTogether) {
    stores.templates.update(templateID(0), "Hello", std::string(9'000'000, 'x'));
    open({row(1, ""), row(2, "")});
    EXPECT_EQ(session->copyAll(), WriteSession::CopyResult::tooLong);
    EXPECT_EQ(state(), ">--");
    EXPECT_EQ(session->copyAndNext(), WriteSession::CopyResult::copied);
    EXPECT_EQ(clipboard->size(), 9'000'000U);
}

TEST(MessageTexts, CountStudentsAndNameOne) {
    using namespace messagetexts;
    EXPECT_EQ(copied(1), "Copied. Paste it where you write your message.");
    EXPECT_EQ(copiedFor(1), "Copied for 1 student");
    EXPECT_EQ(onClipboard({}), "");
    EXPECT_EQ(onClipboard({"Ada\nLovelace"}), "On the clipboard: the message for Ada Lovelace");
    EXPECT_EQ(skipped(0) + skipped(2), "2 students skipped");
    RiskRow row{.name = "  Ada  Lovelace"};
    EXPECT_EQ(writeTo({row}), "Write to Ada");
    EXPECT_EQ(writeTo({row, row}), "Write to 2 Students");
    row.name = std::string(30, 'x');
    EXPECT_EQ(writeTo({row}), "Write to " + std::string(20, 'x') + "…");
}

} // namespace
} // namespace ellwynd
