// The installed data files: valid according to their validators, and consistent with the program.
#include "canvas/tokenstore.h"
#include "cli/commands.h"
#include "cli/run.h"
#include "help/about.h"
#include "help/releasenotes.h"
#include "preferences/preferencekeys.h"
#include "support/temporaryfolder.h"

#include <QDate>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <set>
#include <sstream>

namespace ellwynd {
namespace {

using Words = std::set<std::string>;

const QString folder = QStringLiteral(ELLWYND_SOURCE_DIR "/packaging/");

QString contents(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QString text(const char *name) {
    return contents(folder + QString::fromUtf8(name));
}

/// The command line's manual page, as installed.
QString manual() {
    return contents(QStringLiteral(ELLWYND_MANUAL));
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

Outcome run(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished()) << program.toStdString() << " is not installed";
    return {
        process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        process.readAllStandardOutput().toStdString(),
        process.readAllStandardError().toStdString()};
}

/// All matches of a pattern's first group.
Words all(const QString &from, const char *pattern) {
    Words words;
    auto matches = QRegularExpression(QString::fromUtf8(pattern)).globalMatch(from);
    while (matches.hasNext())
        words.insert(matches.next().captured(1).toStdString());
    return words;
}

TEST(Packaging, ValidatorsReportNoErrors) {
    const QStringList desktops = QDir(folder).entryList({QStringLiteral("*.desktop")}, QDir::Files);
    QStringList pages{QStringLiteral(ELLWYND_MANUAL)};
    for (const QFileInfo &page :
         QDir(folder + QStringLiteral("man")).entryInfoList({QStringLiteral("*.1")}, QDir::Files))
        pages += page.filePath();
    ASSERT_GE(desktops.size(), 2);
    ASSERT_GE(pages.size(), 2);
    for (const QString &name : desktops) {
        const Outcome checked = run(QStringLiteral("desktop-file-validate"), {folder + name});
        EXPECT_EQ(checked.status, 0) << name.toStdString();
        EXPECT_EQ(checked.out + checked.err, "") << name.toStdString();
    }
    for (const QString &name : pages) {
        const Outcome checked =
            run(QStringLiteral("groff"),
                {QStringLiteral("-man"), QStringLiteral("-ww"), QStringLiteral("-Tutf8"),
                 QStringLiteral("-z"), name});
        EXPECT_EQ(checked.status, 0) << name.toStdString();
        EXPECT_EQ(checked.err, "") << name.toStdString();
    }
    // Versions of the validator differ in their exit status, so its complaints are compared. The
    // home page is added by whoever publishes the program.
    const Outcome metainfo =
        run(QStringLiteral("appstreamcli"),
            {QStringLiteral("validate"), QStringLiteral("--no-net"), QStringLiteral("--no-color"),
             folder + QStringLiteral("com.varnok.Ellwynd.metainfo.xml")});
    Words complaints = all(QString::fromStdString(metainfo.out), "(?m)^[EWI]: \\S+ +(\\S+.*)$");
    complaints.erase("url-homepage-missing");
    complaints.erase("unknown-tag developer");
    EXPECT_EQ(complaints, Words{}) << metainfo.out;
    EXPECT_NE(metainfo.out.find("alidation"), std::string::npos) << metainfo.out << metainfo.err;
    EXPECT_EQ(
        run(QStringLiteral("bash"),
            {QStringLiteral("-n"), folder + QStringLiteral("completions/ellwynd-cli.bash")})
            .err,
        "");
}

TEST(Packaging, AllLibrariesAreListedWithTheirLicences) {
    const QString copyright = text("copyright");
    const QString metainfo = text("com.varnok.Ellwynd.metainfo.xml");
    for (const about::Dependency &library : about::dependencies()) {
        const std::string row = fmt::format("\n  {}\\b.*  {}\n", library.name, library.licence);
        EXPECT_TRUE(copyright.contains(QRegularExpression(QString::fromStdString(row)))) << row;
        EXPECT_TRUE(metainfo.contains(QString::fromStdString(std::string(library.name)))) << row;
    }
}

TEST(Packaging, TheMetainfoListsTheReleasesOfTheNotes) {
    const QString metainfo = text("com.varnok.Ellwynd.metainfo.xml");
    std::vector<std::string> listed;
    QDate previous;
    auto matches =
        QRegularExpression(QStringLiteral("<release version=\"([^\"]+)\" date=\"([^\"]+)\"/?>"))
            .globalMatch(metainfo);
    while (matches.hasNext()) {
        const auto match = matches.next();
        listed.push_back(match.captured(1).toStdString());
        const QDate date = QDate::fromString(match.captured(2), Qt::ISODate);
        EXPECT_TRUE(date.isValid()) << listed.back();
        EXPECT_TRUE(previous.isNull() || date <= previous) << listed.back();
        previous = date;
    }
    std::vector<std::string> noted;
    for (const Release &release : releases())
        noted.push_back(release.version);
    EXPECT_EQ(listed, noted);
}

/// Desktops find the entry of a window by its class on X11, which Qt derives from the application's
/// name, and by its application id on Wayland.
TEST(Packaging, DesktopEntriesMatchTheWindows) {
    for (const auto &[source, entry] :
         {std::pair{"../src/main.cpp", "com.varnok.Ellwynd"},
          std::pair{"../src/widgets/main.cpp", "com.varnok.Ellwynd.Widget"}}) {
        const QString program = text(source);
        const auto set = [&program](const char *what) {
            return all(
                program, (std::string(what) + "\\(QStringLiteral\\(\"([^\"]+)\"\\)\\)").c_str());
        };
        const QString desktop = text((std::string(entry) + ".desktop").c_str());
        EXPECT_EQ(set("setDesktopFileName"), Words{entry});
        EXPECT_EQ(
            set("QApplication::setApplicationName"), all(desktop, "(?m)^StartupWMClass=(.+)$"));
    }
}

TEST(Packaging, AllFilesUseTheSameApplicationID) {
    const QString id = QStringLiteral("com.varnok.Ellwynd");
    const QString desktop = text("com.varnok.Ellwynd.desktop");
    // D-Bus activation needs a bus name that equals the desktop entry's name.
    EXPECT_TRUE(desktop.contains(QStringLiteral("\nDBusActivatable=true\n")));
    EXPECT_TRUE(
        text("com.varnok.Ellwynd.service.in")
            .contains(QStringLiteral("\nName=%1\nExec=@ELLWYND_BINDIR@/ellwynd\n").arg(id)));
    EXPECT_TRUE(desktop.contains(QStringLiteral("\nMimeType=x-scheme-handler/ellwynd;\n")));
    EXPECT_TRUE(
        text("com.varnok.Ellwynd.metainfo.xml").contains(QStringLiteral("<id>%1</id>").arg(id)));
    for (const char *name : {"com.varnok.Ellwynd.desktop", "com.varnok.Ellwynd.Widget.desktop"})
        EXPECT_TRUE(text(name).contains(QStringLiteral("\nIcon=%1\n").arg(id))) << name;
    for (const char *icon : {"icons/%1.svg", "icons/%1-symbolic.svg"})
        EXPECT_TRUE(QFileInfo::exists(folder + QString::fromUtf8(icon).arg(id))) << icon;
    EXPECT_TRUE(std::string_view(TokenStore::service).starts_with(id.toStdString()));
}

/// The long options in a command's help.
Words optionsOf(const cli::Command &command) {
    const test::TemporaryFolder home;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const int status =
        cli::run({{command.name, "--help"}}, in, out, err, home.path() / "Preferences.json");
    EXPECT_EQ(status, 0) << err.str();
    return all(QString::fromStdString(out.str()), "(?m)^  (?:-\\w, )?--([a-z][a-z-]+)");
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
Words completed(const QString &shell, const QString &line) {
    const test::TemporaryFolder home;
    const QString completions = folder + QStringLiteral("completions");
    const QString typed = QStringLiteral("ellwynd-cli ") + line;
    QString offered = QString::fromStdString((home.path() / "offered").string());
    qputenv(
        "PATH",
        (QFileInfo(QStringLiteral(ELLWYND_CLI)).path() + u':' + qEnvironmentVariable("PATH"))
            .toUtf8());
    if (shell == u"zsh") {
        (void)home.write(".zshrc", zshScript);
        qputenv("ZDOTDIR", home.path().c_str());
        qputenv("COMPLETIONS", completions.toUtf8());
        qputenv("OFFERED", offered.toUtf8());
        qputenv("LINE", typed.toUtf8());
        qputenv("TERM", "vt100");
        (void)run(
            QStringLiteral("script"),
            {QStringLiteral("-qec"), QStringLiteral("zsh -d -i"), QStringLiteral("/dev/null")});
        offered = QFileInfo::exists(offered) ? contents(offered) : QString();
    } else {
        QStringList words{QStringLiteral("-c"), QString::fromUtf8(bashScript), shell};
        if (shell == u"fish")
            words = {QStringLiteral("-N"), QStringLiteral("-c"), QString::fromUtf8(fishScript)};
        const Outcome outcome = run(shell, words + QStringList{completions, typed});
        EXPECT_EQ(outcome.err, "") << shell.toStdString();
        offered = QString::fromStdString(outcome.out);
    }
    // Fish adds a tab and a description.
    return all(offered, "(?m)^([^\\t\\n]+)");
}

TEST(Packaging, EveryCommandAndOptionIsCompletedAndInTheManual) {
    const QString page = manual().remove(u'\\');
    const Words offered = completed(QStringLiteral("bash"), QString());
    ASSERT_FALSE(cli::commands().empty());
    for (const cli::Command &command : cli::commands()) {
        const QString name = QString::fromUtf8(command.name);
        EXPECT_TRUE(offered.contains(command.name)) << "bash: " << command.name;
        EXPECT_TRUE(
            page.contains(QRegularExpression(QStringLiteral("\\n\\.BI? \"?%1\\b").arg(name))) ||
            page.contains(QStringLiteral("\n.BR %1 ").arg(name)))
            << "man: " << command.name;
        const Words options = completed(
            QStringLiteral("bash"), QStringLiteral("--sample -Key value %1 1 --").arg(name));
        for (const std::string &option : optionsOf(command)) {
            const QString word = QString::fromStdString(option);
            EXPECT_TRUE(options.contains("--" + option)) << "bash: " << command.name << option;
            EXPECT_TRUE(page.contains(QStringLiteral("--%1").arg(word))) << "man: " << option;
        }
    }
}

TEST(Packaging, ProgramsAnswerWithoutADisplay) {
    for (const char *program : {ELLWYND_WINDOW, ELLWYND_WIDGET, ELLWYND_CLI}) {
        const QString path = QString::fromUtf8(program);
        const std::string name = QFileInfo(path).fileName().toStdString();
        // The platform does not exist, so that opening a window would fail.
        qputenv("QT_QPA_PLATFORM", "none");
        const Outcome help = run(path, {QStringLiteral("--help")});
        EXPECT_EQ(help.status, 0) << name;
        EXPECT_THAT(help.out, testing::StartsWith("Usage: " + name + " ["));
        const Outcome version = run(path, {QStringLiteral("--version")});
        EXPECT_EQ(version.status, 0) << name;
        EXPECT_THAT(version.out, testing::MatchesRegex(name + " [0-9.]+\n"));
        qputenv("QT_QPA_PLATFORM", "offscreen");
        EXPECT_EQ(run(path, {QStringLiteral("stray"), QStringLiteral("words")}).status, 2) << name;
    }
}

TEST(Packaging, CompletionDependsOnThePosition) {
    struct Row {
        const char *line;
        Words offered;
    };
    for (const char *shell : {"bash", "zsh", "fish"}) {
        for (const Row &row : {
                 Row{"--sample ros", {"roster"}},
                 Row{"-TextScale ", {}},
                 Row{"-TextScale 1.5 cour", {"courses"}},
                 Row{"-SampleW", {"-SampleWidgets"}},
                 Row{"-SampleWidgets ", {"YES", "NO"}},
                 Row{"defaults ", {"list", "keys", "read", "write", "delete"}},
                 Row{"defaults read DefaultP", {"DefaultPassingScore"}},
                 Row{"defaults write Appearance ", {"automatic", "light", "dark"}},
                 Row{"defaults write TextScale ", {}},
                 Row{"privacy forget-h", {"forget-history"}},
                 Row{"thresholds 1 --passing ", {}},
                 Row{"roster 1 --csv --out", {"--output"}},
                 Row{"message 1 --note --template Em", {"Email"}},
             })
            EXPECT_EQ(completed(QString::fromUtf8(shell), QString::fromUtf8(row.line)), row.offered)
                << shell << ": " << row.line;
    }
    // Names of templates contain blanks.
    for (const auto &[shell, name] :
         {std::pair{"bash", "Short\\ Message"}, std::pair{"fish", "Short Message"},
          std::pair{"zsh", "Short Message"}})
        EXPECT_TRUE(completed(QString::fromUtf8(shell), QStringLiteral("message 1 --template "))
                        .contains(name))
            << shell;
}

TEST(Packaging, TheManualNamesEveryPreferenceOfTeachers) {
    for (const Preference &row : preferences::table) {
        const QString line = QStringLiteral("\n.BR %1 \" (")
                                 .arg(QString::fromUtf8(row.key.data(), qsizetype(row.key.size())));
        EXPECT_EQ(manual().contains(line), row.isForTeachers()) << row.key;
    }
    EXPECT_TRUE(manual().contains(
        QStringLiteral("\n.BR DefaultPassingScore \" (70)\"\nThe passing score in percent.\n"
                       "A number from 0 to 100.\n")));
}

TEST(Packaging, TheManualsNameEveryLogCategory) {
    Words categories;
    QDirIterator sources(
        QStringLiteral(ELLWYND_SOURCE_DIR "/src"), {QStringLiteral("*.cpp")}, QDir::Files,
        QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QFile source(sources.next());
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        categories.merge(
            all(QString::fromUtf8(source.readAll()), R"re(\bLog\b[\w ]*[{(]"([a-z]+)"[)}])re"));
    }
    EXPECT_GE(categories.size(), 12U);
    for (const QString &page : {text("man/ellwynd.1"), manual(), text("../ARCHITECTURE.md")})
        EXPECT_THAT(all(page, R"(\b([a-z]+)\b)"), testing::IsSupersetOf(categories))
            << page.left(80).toStdString();
}

} // namespace
} // namespace ellwynd
