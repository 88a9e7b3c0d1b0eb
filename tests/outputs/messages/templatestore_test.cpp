#include "outputs/messages/templatefile.h"
#include "outputs/messages/templatestore.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace ellwynd {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Date clockNow = test::noon;

struct TemplateStoreTest : testing::Test {
    test::TemporaryFolder folder;
    const std::filesystem::path directory = folder.path() / "a" / "Ellwynd";
    const std::filesystem::path file = directory / "MessageTemplates.json";

    test::LogCapture log;
    std::vector<std::string> &logged = test::LogCapture::errors();

    TemplateStoreTest() { clockNow = test::noon; }

    [[nodiscard]] TemplateStore open() const {
        return TemplateStore(directory, [] { return clockNow; });
    }

    [[nodiscard]] std::string text() const {
        return folder.read("a/Ellwynd/MessageTemplates.json");
    }

    void write(const std::string &bytes) const {
        std::filesystem::create_directories(directory);
        (void)folder.write("a/Ellwynd/MessageTemplates.json", bytes);
    }

    static std::vector<std::string> names(const std::vector<MessageTemplate> &templates) {
        std::vector<std::string> result;
        for (const MessageTemplate &each : templates)
            result.push_back(each.name);
        return result;
    }

    [[nodiscard]] std::vector<std::string> saved() const { return names(decodeTemplates(text())); }
};

TEST_F(TemplateStoreTest, EveryChangeOfTheDefaultTemplatesIsSaved) {
    TemplateStore store = open();
    EXPECT_FALSE(std::filesystem::exists(directory));
    EXPECT_THAT(logged, IsEmpty());
    int changes = 0;
    QObject::connect(&store, &TemplateStore::templatesDidChange, &store, [&] { ++changes; });
    const std::string email = store.templates()[0].id;

    clockNow += std::chrono::milliseconds(1500);
    const std::string untitled = store.addUntitled();
    EXPECT_EQ(store.find(untitled)->body, "Hi {first_name},\n\n");
    EXPECT_THAT(saved(), ElementsAre("Email", "Short Message", "Referral Summary", "Untitled"));

    store.update(email, "Letter", "Dear {name}");
    EXPECT_EQ(store.find(email)->createdAt, test::noon);
    EXPECT_EQ(store.find(email)->updatedAt, clockNow);
    const std::string copy = store.duplicate(email);
    const std::string copyOfCopy = store.duplicate(copy);
    EXPECT_EQ(store.find(copy)->createdAt, clockNow);
    EXPECT_EQ(store.find(copyOfCopy)->name, "Letter Copy Copy");
    EXPECT_EQ(store.find(copyOfCopy)->body, "Dear {name}");
    EXPECT_EQ(changes, 4);

    store.update("unknown", "x", "y");
    EXPECT_EQ(store.duplicate("unknown"), "");
    EXPECT_THAT(store.remove("unknown").removed, IsEmpty());
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(open().templates(), store.templates()) << "with the same dates and ids";
}

TEST_F(TemplateStoreTest, RemovalsCanBeUndone) {
    TemplateStore store = open();
    const auto initial = store.templates();
    const auto removal = store.remove(initial[1].id);
    EXPECT_THAT(saved(), ElementsAre("Email", "Referral Summary"));
    store.undo(removal);
    EXPECT_EQ(store.templates(), initial);
    store.undo(removal);
    EXPECT_EQ(store.templates(), initial) << "a template that exists is not inserted again";

    store.add(newTemplate("Email 2", "mine", clockNow));
    store.add(newTemplate("Email", "mine as well", clockNow));
    store.update(initial[1].id, "short message", "edited and renamed");
    const auto before = store.templates();
    const auto restored = store.restoreDefaults();
    EXPECT_THAT(
        saved(),
        ElementsAre("Email", "Short Message", "Referral Summary", "short message", "Email 2"));
    EXPECT_EQ(store.templates()[0].body, initial[0].body);
    EXPECT_NE(store.templates()[0].id, initial[0].id);
    const std::string edited = store.templates()[1].id;
    store.undo(restored);
    EXPECT_EQ(store.templates(), before);

    const auto restoredAgain = store.restoreDefaults();
    store.update(restoredAgain.added[0].id, "Email", "edited since");
    store.undo(restoredAgain);
    EXPECT_NE(store.find(restoredAgain.added[0].id), nullptr);
    EXPECT_EQ(store.templates().size(), before.size() + 1);
}

TEST_F(TemplateStoreTest, TheFileIsIndentedWithSortedKeys) {
    write(R"([{"updatedAt": 5, "name": "N", "id": "aaaaaaaa-0000-4000-8000-00000000000f",
              "createdAt": -1.5, "body": "b\u00a0{x}\n", "later": [1]}])");
    TemplateStore store = open();
    ASSERT_EQ(store.templates().size(), 1U);
    clockNow = test::at("2001-01-01T00:01:00.25Z");
    store.update(store.templates()[0].id, "Ü", store.templates()[0].body);
    EXPECT_EQ(
        text(),
        R"([
  {
    "body": "b)"
        "\u00A0"
        R"({x}\n",
    "createdAt": -1.5,
    "id": "AAAAAAAA-0000-4000-8000-00000000000F",
    "name": "Ü",
    "updatedAt": 60.25
  }
]
)");
    write("[]");
    EXPECT_THAT(open().templates(), IsEmpty()) << "an empty list stays empty";
}

TEST_F(TemplateStoreTest, AnUnreadableFileIsSetAside) {
    const json good{
        {"id", "AAAAAAAA-0000-4000-8000-000000000000"},
        {"name", "N"},
        {"body", "secret words"},
        {"createdAt", 1},
        {"updatedAt", 1}};
    const auto with = [&good](const char *key, const json &value) {
        json changed = good;
        changed[key] = value;
        return json{good, changed}.dump();
    };
    json undated = good;
    undated.erase("updatedAt");
    const std::string whole = json{good}.dump();
    for (const std::string &bytes :
         {std::string("{}"), std::string("[1]"), whole.substr(0, whole.find("words")),
          std::string("[\"\xc3\"]"), with("id", "x"),
          with("id", "{AAAAAAAA-0000-4000-8000-000000000000}"),
          with("id", "GAAAAAAA-0000-4000-8000-000000000000"), with("name", nullptr),
          with("body", json::array()), with("createdAt", "2026-09-24T12:00:00Z"),
          with("updatedAt", 1e12), json{undated}.dump()}) {
        write(bytes);
        logged.clear();
        EXPECT_EQ(open().templates().size(), 3U) << bytes;
        const std::string aside = "MessageTemplates.unreadable-1790251200.json";
        EXPECT_THAT(
            logged,
            ElementsAre(
                testing::AllOf(
                    HasSubstr("templates: Couldn't read message templates: "),
                    testing::Not(HasSubstr("secret"))),
                "templates: Set the unreadable file aside at " + aside))
            << bytes;
        EXPECT_FALSE(std::filesystem::exists(file));
        EXPECT_EQ(folder.read("a/Ellwynd/" + aside), bytes);
        std::filesystem::remove(directory / aside);
    }
    write("");
    std::filesystem::resize_file(file, (std::uintmax_t{64} << 20) + 1);
    EXPECT_EQ(open().templates().size(), 3U);
    EXPECT_THAT(logged, testing::Contains(HasSubstr("larger than 64 MiB")));
}

TEST_F(TemplateStoreTest, ADateOutOfRangeIsReplacedByTheOther) {
    const Date fifth = test::at("2001-01-01T00:00:05Z");
    const Date first = test::at("2001-01-01T00:00:00Z");
    for (const auto &[created, updated, date] :
         {std::tuple{"1e999", "5", fifth}, {"5", "1e999", fifth}, {"1e999", "1e999", first}}) {
        write(
            R"([{"id":"AAAAAAAA-0000-4000-8000-00000000000F","name":"N","body":"b","createdAt":)" +
            std::string(created) + R"(,"updatedAt":)" + updated + "}]");
        const TemplateStore store = open();
        ASSERT_THAT(names(store.templates()), ElementsAre("N")) << created;
        EXPECT_EQ(store.templates()[0].createdAt, date);
        EXPECT_EQ(store.templates()[0].updatedAt, date);
    }
}

TEST_F(TemplateStoreTest, AFolderInPlaceOfTheFileIsSetAside) {
    std::filesystem::create_directories(file / "full");
    TemplateStore store = open();
    EXPECT_THAT(
        logged,
        ElementsAre(
            HasSubstr("templates: Couldn't read message templates: "),
            HasSubstr("Set the unreadable file aside at ")));
    (void)store.addUntitled();
    EXPECT_EQ(saved().size(), 4U);
}

TEST_F(TemplateStoreTest, UnsavedChangesAreSavedLater) {
    std::filesystem::create_directories(directory.parent_path());
    (void)folder.write("a/Ellwynd", "a file in place of the folder");
    TemplateStore store = open();
    (void)store.addUntitled();
    EXPECT_FALSE(store.isSaved());
    EXPECT_THAT(logged, ElementsAre(HasSubstr("templates: Couldn't save message templates: ")));
    EXPECT_EQ(store.templates().size(), 4U);
    std::filesystem::remove(directory);
    {
        // Meanwhile another process starts with the default templates.
        TemplateStore other = open();
        (void)other.remove(other.templates()[0].id);
        other.add(newTemplate("Theirs", "", clockNow));
    }
    int changes = 0;
    QObject::connect(&store, &TemplateStore::templatesDidChange, &store, [&] { ++changes; });
    store.saveUnsaved();
    EXPECT_EQ(changes, 1);
    store.saveUnsaved();
    EXPECT_EQ(changes, 1) << "there was something to save only once";
    EXPECT_TRUE(store.isSaved());
    EXPECT_THAT(saved(), ElementsAre("Short Message", "Referral Summary", "Theirs", "Untitled"));
    EXPECT_EQ(names(store.templates()), saved());
}

TEST_F(TemplateStoreTest, ChangesOfTwoProcessesAreMerged) {
    TemplateStore first = open();
    const std::string a = first.addUntitled();
    TemplateStore second = open();
    (void)second.remove(second.templates()[0].id);
    first.update(a, "A", "edited");
    EXPECT_THAT(saved(), ElementsAre("Short Message", "Referral Summary", "A"));

    // A template that is being edited survives its deletion by another process.
    (void)second.remove(a);
    EXPECT_THAT(saved(), ElementsAre("Short Message", "Referral Summary"));
    first.update(a, "A", "edited again");
    EXPECT_THAT(saved(), ElementsAre("Short Message", "Referral Summary", "A"));

    // Removing the file loses nothing that is in memory.
    std::filesystem::remove(file);
    (void)first.duplicate(a);
    EXPECT_THAT(saved(), ElementsAre("Short Message", "Referral Summary", "A", "A Copy"));
}

} // namespace
} // namespace ellwynd
