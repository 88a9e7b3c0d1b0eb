#include "generated/version.h"
#include "help/about.h"
#include "help/helpbook.h"
#include "help/releasenotes.h"
#include "support/matches.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

namespace ellwynd {
namespace {

using testing::HasSubstr;
using testing::Not;

std::vector<std::string> ids(const std::vector<HelpHit> &hits) {
    std::vector<std::string> result;
    for (const HelpHit &hit : hits)
        result.push_back(hit.topic->id);
    return result;
}

TEST(HelpBook, TopicsAreCompleteAndLinksAreValid) {
    const HelpBook book;
    std::set<std::string> seen;
    const std::string link = R"(\]\(([^)]*)\))";
    for (const HelpTopic &topic : book.topics()) {
        EXPECT_TRUE(seen.insert(topic.id).second) << topic.id;
        EXPECT_FALSE(topic.title.empty()) << topic.id;
        EXPECT_FALSE(topic.keywords.empty()) << topic.id;
        EXPECT_GT(topic.body.size(), 200U) << topic.id;
        // Without shortcuts the placeholder is replaced too.
        EXPECT_THAT(topic.body, Not(HasSubstr("{shortcuts}")));
        for (const std::string &target : test::matches(topic.body, link)) {
            if (target.starts_with("topic:"))
                EXPECT_NE(book.find(target.substr(6)), nullptr) << topic.id << ": " << target;
            else
                EXPECT_TRUE(target.starts_with("https://")) << topic.id << ": " << target;
        }
    }
    for (const auto &file :
         std::filesystem::directory_iterator(ELLWYND_SOURCE_DIR "/src/help/topics"))
        EXPECT_TRUE(seen.contains(file.path().stem())) << file.path() << " is not compiled in";
    EXPECT_EQ(book.topics().back().id, HelpBook::releaseNotesID);
    EXPECT_EQ(book.find("nowhere"), nullptr);
}

TEST(HelpBook, FindsTopicsForQueriesAndQuestions) {
    const HelpBook book;
    struct Row {
        const char *query;
        const char *topic;
        /// The topic is among that many results.
        std::size_t within = 1;
    };
    for (const Row &row : std::vector<Row>{
             {"PRIVACY what is stored", "privacy"},
             {"token", "connecting"},
             {"first_name", "templates"},
             {"{missing_lines}", "templates"},
             {"keyb", "keyboard"},
             {"thrésholds", "thresholds"},
             {"couldn’t reach", "troubleshooting"},
             {"captive portal", "troubleshooting"},
             {"Keychain error 3", "keychain"},
             {"low time in course", "reasons"},
             {"release notes", "whats-new"},
             {"Why is this student flagged?", "reasons", 3},
             {"How do I open the export in a spreadsheet?", "export", 3},
             {"How do I leave the sample college?", "sample-college", 3},
             {"What counts as a visit?", "visits", 3},
             {"How do I delete everything that Ellwynd stored?", "privacy", 3},
             {"What are the .lock files for?", "privacy", 3},
             {"How can I make the text bigger?", "appearance", 3},
             {"Can I use Ellwynd on two computers?", "sync", 3},
             {"I marked the wrong student as contacted", "contacts", 3},
             {"How do I print a page for a parent meeting?", "printing", 3}}) {
        auto hits = ids(book.search(row.query));
        hits.resize(std::min(hits.size(), row.within));
        EXPECT_THAT(hits, testing::Contains(row.topic)) << row.query;
    }
    for (const char *none : {"zzyzx", "token zzyzx", "???", "{}", "ecksport"})
        EXPECT_THAT(ids(book.search(none)), testing::IsEmpty()) << none;
    for (const char *blank : {"", "  \n"}) {
        const auto all = book.search(blank);
        ASSERT_EQ(all.size(), book.topics().size());
        EXPECT_EQ(all.front().topic->id, "getting-started");
        EXPECT_EQ(all.front().snippet, "");
    }
}

TEST(HelpBook, RanksTitlesBeforeKeywordsBeforeText) {
    const HelpBook book;
    const auto hits = ids(book.search("export"));
    const auto at = [&](const char *id) { return std::ranges::find(hits, id) - hits.begin(); };
    EXPECT_EQ(at("export"), 0) << "in the title";
    EXPECT_LT(at("privacy"), std::ssize(hits)) << "in the text";
    // "grades" is a keyword of one topic and occurs in the text of several earlier ones.
    EXPECT_EQ(ids(book.search("grades")).front(), "privacy");
}

TEST(HelpBook, SnippetsShowTheFirstMatch) {
    const HelpBook book;
    EXPECT_THAT(
        book.search("captive portal").front().snippet,
        testing::AllOf(HasSubstr("captive portal"), testing::StartsWith("…"), Not(HasSubstr(">"))));
    // If only a keyword matches, the snippet is the beginning of the topic.
    EXPECT_THAT(book.search("boilerplate").front().snippet, testing::StartsWith("A template is"));
}

TEST(HelpBook, ListsTheGivenShortcuts) {
    const HelpBook book({{"File", {{"Refresh | All", "Ctrl+R, F5"}, {"Settings", "Ctrl+,"}}}});
    const std::string body = book.find("keyboard")->body;
    EXPECT_THAT(body, HasSubstr("## File\n\n| Command | Keys |\n| --- | --- |\n"));
    EXPECT_THAT(body, HasSubstr("| Refresh \\| All | Ctrl+R, F5 |\n| Settings | Ctrl+, |\n"));
    EXPECT_EQ(book.search("refresh f5").front().topic->id, "keyboard");
}

TEST(HelpBook, RejectsTopicsWithoutAHeading) {
    EXPECT_EQ(
        parseTopic("a", "---\ntitle: T: u\nkeywords: x, y z\n---\n\nText\n"),
        (HelpTopic{"a", "T: u", {"x", "y z"}, "Text\n"}));
    for (const char *text :
         {"", "Text", "---\ntitle: \nkeywords: x\n---\n", "---\ntitle: T\n---\nText\n",
          "---\ntitle: T\nkeywords: x\nText\n"})
        EXPECT_THROW(static_cast<void>(parseTopic("a", text)), std::invalid_argument) << text;
}

TEST(PlainText, RemovesMarkup) {
    struct Row {
        const char *markdown;
        const char *text;
    };
    for (const Row &row : {
             Row{"## A **bold** `code`\n\n> quoted\n", "A bold code quoted"},
             Row{"- one\n- two-fold\n", "one two-fold"},
             Row{"| a | b\\|c |\n| --- | --: |\n| d | {first_name} |", "a b c d {first_name}"},
             Row{"see [the page](topic:x), then", "see the page, then"},
             Row{"[open (", "open ("},
             Row{"", ""},
         })
        EXPECT_EQ(plainText(row.markdown), row.text);
}

TEST(ReleaseNotes, AreTheSectionsOfTheChangelog) {
    using Releases = std::vector<Release>;
    EXPECT_EQ(
        parseChangelog("# Changelog\n\n## 1.1\n\n- b\n  c\n\n## 1.0\n- a\n### x\n"),
        (Releases{{"1.1", "- b\n  c"}, {"1.0", "- a\n### x"}}));
    EXPECT_EQ(parseChangelog("## 1"), (Releases{{"1", ""}}));
    EXPECT_EQ(parseChangelog("# Changelog\n"), Releases{});
    EXPECT_EQ(parseChangelog(""), Releases{});
    EXPECT_EQ(releases().front().version, version)
        << "the newest section must be that of this version";
    EXPECT_THAT(
        HelpBook().find(HelpBook::releaseNotesID)->body, HasSubstr(releases().front().notes));
}

TEST(About, NamesEveryLibraryOfTheProgram) {
    std::ifstream file(ELLWYND_SOURCE_DIR "/ARCHITECTURE.md");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    // The libraries of the program come before those of its tests.
    const std::size_t begin = text.find("## Libraries");
    const std::string table = text.substr(begin, text.find("| GoogleTest", begin) - begin);
    for (const about::Dependency &dependency : about::dependencies())
        EXPECT_THAT(table, HasSubstr("| " + std::string(dependency.name)))
            << "is not used any more";
    std::size_t rows = 0;
    for (const std::string &name : test::matches(table, "^\\| ([^|(,]+?) (?=[|(])")) {
        if (name == "library")
            continue;
        ++rows;
        EXPECT_TRUE(std::ranges::any_of(
            about::dependencies(),
            [&](const about::Dependency &dependency) { return name.starts_with(dependency.name); }))
            << name;
    }
    EXPECT_GE(rows, about::dependencies().size());
}

} // namespace
} // namespace ellwynd
