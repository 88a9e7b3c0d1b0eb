#include "platform/session/autostart.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(Autostart, AnyPathIsStartedAsItIs) {
    const test::TemporaryFolder folder;
    struct Row {
        const char *program;
        const char *exec;
    };
    for (const Row &row : {
             Row{"/usr/bin/ellwynd-widget", R"("/usr/bin/ellwynd-widget")"},
             Row{"/home/a b/100%", R"("/home/a b/100%%")"},
             Row{"/x/\"$HOME`\\\n", R"("/x/\\"\\$HOME\\`\\\\\n")"},
         }) {
        const autostart::Entry entry{"a.desktop", "A", row.program};
        autostart::set(folder.path() / "autostart", entry, true);
        EXPECT_TRUE(autostart::isOn(folder.path() / "autostart", entry));
        EXPECT_THAT(
            folder.read("autostart/a.desktop"),
            testing::HasSubstr(std::string("\nExec=") + row.exec + "\n"));
    }
}

} // namespace
} // namespace ellwynd
