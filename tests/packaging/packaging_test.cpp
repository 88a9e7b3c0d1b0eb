// The installed data files: valid according to their validators, and consistent with the program.
#include "canvas/tokenstore.h"
#include "cli/commands.h"
#include "cli/run.h"
#include "help/about.h"
#include "help/releasenotes.h"
#include "preferences/preferencekeys.h"
#include "support/matches.h"
#include "support/temporaryfolder.h"

#include <QDate>
#include <QProcess>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;
using test::matches;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using Words = std::set<std::string>;

const fs::path folder = ELLWYND_SOURCE_DIR "/packaging";

std::string contents(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The command line's manual page, as installed.
std::string manual() {
    return contents(ELLWYND_MANUAL);
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

Outcome run(const std::string &program, const std::vector<std::string> &arguments) {
    QStringList words;
    for (const std::string &argument : arguments)
        words << QString::fromStdString(argument);
    QProcess process;
    process.start(QString::fromStdString(program), words);
    EXPECT_TRUE(process.waitForFinished()) << program << " is not installed";
    return {
        process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        process.readAllStandardOutput().toStdString(),
        process.readAllStandardError().toStdString()};
}

TEST(Packaging, ValidatorsReportNoErrors) {
    std::vector<fs::path> files{ELLWYND_MANUAL};
    for (const auto &file : fs::recursive_directory_iterator(folder))
        files.push_back(file.path());
    Words kinds;
    for (const fs::path &file : files) {
        const std::string kind = file.extension();
        const bool isEntry = kind == ".desktop";
        const bool isPage = kind == ".1";
        if (!isEntry && !isPage && kind != ".bash")
            continue;
        kinds.insert(kind);
        const Outcome checked = isEntry ? run("desktop-file-validate", {file})
            : isPage                    ? run("groff", {"-man", "-ww", "-Tutf8", "-z", file})
                                        : run("bash", {"-n", file});
        EXPECT_EQ(checked.status, 0) << file;
        EXPECT_EQ(checked.out + checked.err, "") << file;
    }
    EXPECT_EQ(kinds.size(), 3U);
    // Versions of the validator differ in their exit status, so its complaints are compared. The
    // home page is added by whoever publishes the program.
    const Outcome metainfo =
        run("appstreamcli",
            {"validate", "--no-net", "--no-color", folder / "com.varnok.Ellwynd.metainfo.xml"});
    for (const std::string &complaint : matches(metainfo.out, "^[EWI]: \\S+ +(\\S+.*)$"))
        EXPECT_THAT(complaint, AnyOf("url-homepage-missing", "unknown-tag developer"));
    EXPECT_THAT(metainfo.out, HasSubstr("alidation")) << metainfo.err;
}

TEST(Packaging, AllLibrariesAreListedWithTheirLicences) {
    const std::string copyright = contents(folder / "copyright");
    const std::string metainfo = contents(folder / "com.varnok.Ellwynd.metainfo.xml");
    for (const about::Dependency &library : about::dependencies()) {
        const std::regex row(fmt::format("\n  {}\\b.*  {}\n", library.name, library.licence));
        EXPECT_TRUE(std::regex_search(copyright, row)) << library.name;
        EXPECT_THAT(metainfo, HasSubstr(library.name));
    }
}

TEST(Packaging, TheMetainfoListsTheReleasesOfTheNotes) {
    const std::string metainfo = contents(folder / "com.varnok.Ellwynd.metainfo.xml");
    std::vector<std::string> noted;
    for (const Release &release : releases())
        noted.push_back(release.version);
    EXPECT_EQ(matches(metainfo, "<release version=\"([^\"]+)\""), noted);
    const auto dates = matches(metainfo, "<release [^>]* date=\"([^\"]+)\"/?>");
    EXPECT_EQ(dates.size(), noted.size());
    EXPECT_TRUE(std::ranges::is_sorted(dates, std::greater<>()));
    for (const std::string &date : dates)
        EXPECT_TRUE(QDate::fromString(QString::fromStdString(date), Qt::ISODate).isValid()) << date;
}

/// Desktops find the entry of a window by its class on X11, which Qt derives from the application's
/// name, and by its application id on Wayland.
TEST(Packaging, DesktopEntriesMatchTheWindows) {
    for (const auto &[source, entry] :
         {std::pair{"../src/main.cpp", "com.varnok.Ellwynd"},
          std::pair{"../src/widgets/main.cpp", "com.varnok.Ellwynd.Widget"}}) {
        const std::string program = contents(folder / source);
        const std::string desktop = contents(folder / (std::string(entry) + ".desktop"));
        const std::string argument = R"re(\(QStringLiteral\("([^"]+)"\)\))re";
        EXPECT_THAT(matches(program, "setDesktopFileName" + argument), ElementsAre(entry));
        EXPECT_EQ(
            matches(program, "QApplication::setApplicationName" + argument),
            matches(desktop, "^StartupWMClass=(.+)$"));
    }
}

TEST(Packaging, AllFilesUseTheSameApplicationID) {
    struct Row {
        const char *file;
        const char *text;
    };
    for (const Row &row :
         std::vector<Row>{// D-Bus activation needs a bus name that equals the desktop entry's name.
                          {"com.varnok.Ellwynd.desktop", "\nDBusActivatable=true\n"},
                          {"com.varnok.Ellwynd.service.in",
                           "\nName=com.varnok.Ellwynd\nExec=@ELLWYND_BINDIR@/ellwynd\n"},
                          {"com.varnok.Ellwynd.desktop", "\nMimeType=x-scheme-handler/ellwynd;\n"},
                          {"com.varnok.Ellwynd.metainfo.xml", "<id>com.varnok.Ellwynd</id>"},
                          {"com.varnok.Ellwynd.desktop", "\nIcon=com.varnok.Ellwynd\n"},
                          {"com.varnok.Ellwynd.Widget.desktop", "\nIcon=com.varnok.Ellwynd\n"},
                          {"icons/com.varnok.Ellwynd.svg", "<svg"},
                          {"icons/com.varnok.Ellwynd-symbolic.svg", "<svg"}})
        EXPECT_THAT(contents(folder / row.file), HasSubstr(row.text));
    EXPECT_THAT(TokenStore::service, StartsWith("com.varnok.Ellwynd"));
}

/// The long options in a command's help.
std::vector<std::string> optionsOf(const cli::Command &command) {
    const test::TemporaryFolder home;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const int status =
        cli::run({{command.name, "--help"}}, in, out, err, home.path() / "Preferences.json");
    EXPECT_EQ(status, 0) << err.str();
    return matches(out.str(), "^  (?:-\\w, )?--([a-z][a-z-]+)");
}

/// Bash calls the function; fish is asked for completions; zsh completes a line on a terminal, and
/// records what its functions add.
constexpr const char *bashScript = R"(
source "$1/ellwynd-cli.bash"
compopt() { :; }
COMP_LINE=$2 COMP_POINT=${#2}
read -ra COMP_WORDS <<<"$2"
[[ $2 != *' ' ]] || COMP_WORDS+=('')
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_ellwynd_cli
printf '%s\n' "${COMPREPLY[@]}")";
constexpr const char *fishScript = R"(
source $argv[1]/ellwynd-cli.fish
complete -C $argv[2])";
constexpr const char *zshScript = R"(
fpath=($COMPLETIONS $fpath)
autoload -U compinit && compinit -u -D
compadd() {
  local -a offered
  if ((! ${@[(I)-[OAD]]})); then
    builtin compadd -O offered "$@"
    print -lr -- $offered >>$OFFERED
  fi
  builtin compadd "$@"
}
complete-line() {
  BUFFER=$LINE CURSOR=$#LINE
  zle list-choices
  exit
}
zle -N zle-line-init complete-line)";

/// The completions that a shell offers at the end of a line, which begins after the program's name.
Words completed(const std::string &shell, const std::string &line) {
    const test::TemporaryFolder home;
    const std::string completions = folder / "completions";
    const std::string typed = "ellwynd-cli " + line;
    const QByteArray programs = QByteArray(fs::path(ELLWYND_CLI).parent_path().c_str()) + ":";
    if (!qgetenv("PATH").startsWith(programs))
        qputenv("PATH", programs + qgetenv("PATH"));
    std::string offered;
    if (shell == "zsh") {
        (void)home.write(".zshrc", zshScript);
        (void)home.write("offered", "");
        qputenv("ZDOTDIR", home.path().c_str());
        qputenv("COMPLETIONS", completions.c_str());
        qputenv("OFFERED", (home.path() / "offered").c_str());
        qputenv("LINE", typed.c_str());
        qputenv("TERM", "vt100");
        (void)run("script", {"-qec", "zsh -d -i", "/dev/null"});
        offered = home.read("offered");
    } else {
        const Outcome outcome = shell == "fish"
            ? run(shell, {"-N", "-c", fishScript, completions, typed})
            : run(shell, {"-c", bashScript, shell, completions, typed});
        EXPECT_EQ(outcome.err, "") << shell;
        offered = outcome.out;
    }
    // Fish adds a tab and a description.
    const auto words = matches(offered, "^([^\\t\\n]+)");
    return {words.begin(), words.end()};
}

TEST(Packaging, EveryCommandAndOptionIsCompletedAndInTheManual) {
    const std::string page = std::regex_replace(manual(), std::regex(R"(\\)"), "");
    const Words offered = completed("bash", "");
    ASSERT_FALSE(cli::commands().empty());
    for (const cli::Command &command : cli::commands()) {
        const std::string name = command.name;
        EXPECT_THAT(offered, Contains(name));
        const std::regex entry(fmt::format(R"(\n\.(BI? "?{}\b|BR {} ))", name, name));
        EXPECT_TRUE(std::regex_search(page, entry)) << "man: " << name;
        const Words options = completed("bash", "--sample -Key value " + name + " 1 --");
        for (const std::string &option : optionsOf(command)) {
            EXPECT_THAT(options, Contains("--" + option)) << "bash: " << name;
            EXPECT_TRUE(page.find("--" + option) != std::string::npos) << "man: " << option;
        }
    }
}

TEST(Packaging, ProgramsAnswerWithoutADisplay) {
    for (const std::string path : {ELLWYND_WINDOW, ELLWYND_WIDGET, ELLWYND_CLI}) {
        const std::string name = fs::path(path).filename();
        // The platform does not exist, so that opening a window would fail.
        qputenv("QT_QPA_PLATFORM", "none");
        const Outcome help = run(path, {"--help"});
        EXPECT_EQ(help.status, 0) << name;
        EXPECT_THAT(help.out, StartsWith("Usage: " + name + " ["));
        const Outcome version = run(path, {"--version"});
        EXPECT_EQ(version.status, 0) << name;
        EXPECT_THAT(version.out, testing::MatchesRegex(name + " [0-9.]+\n"));
        qputenv("QT_QPA_PLATFORM", "offscreen");
        EXPECT_EQ(run(path, {"stray", "words"}).status, 2) << name;
    }
}

TEST(Packaging, CompletionDependsOnThePosition) {
    struct Row {
        const char *line;
        Words offered;
    };
    for (const char *shell : {"bash", "zsh", "fish"}) {
        for (const Row &row : std::vector<Row>{
                 {"--sample ros", {"roster"}},
                 {"-TextScale ", {}},
                 {"-TextScale 1.5 cour", {"courses"}},
                 {"-SampleW", {"-SampleWidgets"}},
                 {"-SampleWidgets ", {"YES", "NO"}},
                 {"defaults ", {"list", "keys", "read", "write", "delete"}},
                 {"defaults read DefaultP", {"DefaultPassingScore"}},
                 {"defaults write Appearance ", {"automatic", "light", "dark"}},
                 {"defaults write TextScale ", {}},
                 {"privacy forget-h", {"forget-history"}},
                 {"thresholds 1 --passing ", {}},
                 {"roster 1 --csv --out", {"--output"}},
                 {"message 1 --note --template Em", {"Email"}}})
            EXPECT_EQ(completed(shell, row.line), row.offered) << shell << ": " << row.line;
        // Names of templates contain blanks.
        const bool isEscaped = shell == std::string_view("bash");
        EXPECT_THAT(
            completed(shell, "message 1 --template "),
            Contains(isEscaped ? "Short\\ Message" : "Short Message"));
    }
}

TEST(Packaging, TheManualNamesEveryPreferenceOfTeachers) {
    const std::string page = manual();
    for (const Preference &row : preferences::table) {
        const std::string line = fmt::format("\n.BR {} \" (", row.key);
        EXPECT_EQ(page.find(line) != std::string::npos, row.isForTeachers()) << row.key;
    }
    EXPECT_THAT(
        page,
        HasSubstr("\n.BR DefaultPassingScore \" (70)\"\nThe passing score in percent.\n"
                  "A number from 0 to 100.\n"));
}

TEST(Packaging, TheManualsNameEveryLogCategory) {
    Words categories;
    for (const auto &source : fs::recursive_directory_iterator(folder / "../src")) {
        if (source.path().extension() != ".cpp")
            continue;
        for (const std::string &category :
             matches(contents(source.path()), R"re(\bLog\b[\w ]*[{(]"([a-z]+)"[)}])re"))
            categories.insert(category);
    }
    EXPECT_GE(categories.size(), 12U);
    for (const std::string &page :
         {contents(folder / "man/ellwynd.1"), manual(), contents(folder / "../ARCHITECTURE.md")}) {
        for (const std::string &category : categories)
            EXPECT_TRUE(std::regex_search(page, std::regex("\\b" + category + "\\b")))
                << category << " in " << page.substr(0, 80);
    }
}

} // namespace
} // namespace ellwynd
