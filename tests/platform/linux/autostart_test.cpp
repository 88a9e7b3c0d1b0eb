#include "platform/folders/directories.h"
#include "platform/session/autostart.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

TEST(Directories, RelativePathsAreIgnored) {
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    const fs::path home = qgetenv("HOME").toStdString();
    for (const auto &[value, expected] : std::initializer_list<std::pair<const char *, fs::path>>{
             {"/elsewhere", "/elsewhere"},
             {"data", home / ".local/share"},
             {"./data", home / ".local/share"},
             {"", home / ".local/share"}}) {
        qputenv("XDG_DATA_HOME", value);
        EXPECT_EQ(directories::data(), expected / "Ellwynd") << value;
        EXPECT_EQ(directories::widgetContainer().parent_path(), expected) << value;
    }
    qputenv("XDG_DATA_HOME", before);
}

TEST(Autostart, ProgramPathsAreEscaped) {
    const test::TemporaryFolder folder;
    const autostart::Entry entry{"a.desktop", "A", "/a b/\"$HOME`\\\n100%"};
    autostart::set(folder.path() / "autostart", entry, true);
    EXPECT_TRUE(autostart::isOn(folder.path() / "autostart", entry));
    const std::string exec = R"(Exec="/a b/\\"\\$HOME\\`\\\\\n100%%")";
    EXPECT_THAT(folder.read("autostart/a.desktop"), testing::HasSubstr("\n" + exec + "\n"));
}

TEST(Autostart, EntriesOfOtherProgramsAndDesktopsAreRead) {
    const test::TemporaryFolder folder;
    const autostart::Entry entry{"a.desktop", "A", "/opt/a b/100%"};
    const std::string group = "[Desktop Entry]\n";
    const std::string exec = "Exec=\"/opt/a b/100%%\"\n";
    for (const auto &[what, text, on] : std::vector<std::tuple<const char *, std::string, bool>>{
             {"minimal", group + exec, true},
             {"not hidden", group + exec + "Hidden=false\n", true},
             {"hidden", group + exec + "Hidden=true\n", false},
             {"hidden in another group", group + exec + "[X]\nHidden=true\n", true},
             {"enabled", group + exec + "X-GNOME-Autostart-enabled=true\n", true},
             {"disabled", group + exec + "X-GNOME-Autostart-enabled = false\n", false},
             {"disabled by another desktop", group + "X-MATE-Autostart-enabled=false\n" + exec,
              false},
             {"another key that is false", group + exec + "Terminal=false\n", true},
             {"TryExec with its program", group + exec + "TryExec=/opt/a b/100%\n", true},
             {"TryExec with another program", group + exec + "TryExec=/opt/b\n", false},
             {"another program", group + "Exec=\"/opt/b\"\n", false},
             {"with an argument", group + "Exec=\"/opt/a b/100%%\" -x\n", false},
             {"no program", group + "Name=A\n", false},
             {"not an entry", "<html>", false},
         }) {
        folder.write(entry.fileName, text);
        EXPECT_EQ(autostart::isOn(folder.path(), entry), on) << what;
    }
}

} // namespace
} // namespace ellwynd
