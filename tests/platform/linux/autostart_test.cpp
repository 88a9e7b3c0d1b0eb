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
    struct Row {
        const char *what;
        std::string text;
        bool on;
    };
    for (const Row &row : {
             Row{"minimal", group + exec, true},
             Row{"not hidden", group + exec + "Hidden=false\n", true},
             Row{"hidden", group + exec + "Hidden=true\n", false},
             Row{"hidden in another group", group + exec + "[X]\nHidden=true\n", true},
             Row{"enabled", group + exec + "X-GNOME-Autostart-enabled=true\n", true},
             Row{"disabled", group + exec + "X-GNOME-Autostart-enabled = false\n", false},
             Row{"disabled by another desktop", group + "X-MATE-Autostart-enabled=false\n" + exec,
                 false},
             Row{"another key that is false", group + exec + "Terminal=false\n", true},
             Row{"TryExec with its program", group + exec + "TryExec=/opt/a b/100%\n", true},
             Row{"TryExec with another program", group + exec + "TryExec=/opt/b\n", false},
             Row{"another program", group + "Exec=\"/opt/b\"\n", false},
             Row{"with an argument", group + "Exec=\"/opt/a b/100%%\" -x\n", false},
             Row{"no program", group + "Name=A\n", false},
             Row{"not an entry", "<html>", false},
         }) {
        folder.write(entry.fileName, row.text);
        EXPECT_EQ(autostart::isOn(folder.path(), entry), row.on) << row.what;
    }
}

} // namespace
} // namespace ellwynd
