// Modules may include only modules below them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// What a module may know of the toolkit.
enum class Toolkit { none, sources, all, gui, widgets };

struct Module {
    std::string folder;
    std::set<std::string> dependsOn;
    Toolkit toolkit = Toolkit::all;
};

/// A nested folder comes before the folder around it, so that a file belongs to its innermost
/// module.
const std::vector<Module> modules{
    {"src/base", {}, Toolkit::sources},
    {"src/preferences", {"src/base"}, Toolkit::sources},
    {"src/platform", {"src/preferences"}},
    {"src/net", {"src/base"}},
    {"src/canvas/records", {"src/base"}, Toolkit::none},
    {"src/canvas", {"src/canvas/records", "src/net", "src/platform"}},
    {"src/risk", {"src/canvas/records", "src/preferences"}, Toolkit::none},
    {"src/memory", {"src/risk", "src/platform"}},
    {"src/outputs/snapshot", {"src/platform"}},
    {"src/outputs", {"src/memory", "src/outputs/snapshot"}},
    {"src/app", {"src/outputs", "src/canvas"}},
    {"src/theme", {"src/preferences"}, Toolkit::gui},
    {"src/uikit", {"src/theme"}, Toolkit::widgets},
    {"src/help", {"src/base"}, Toolkit::sources},
    {"src/ui", {"src/app", "src/uikit", "src/help"}, Toolkit::widgets},
    {"src/cli", {"src/app"}},
    {"src/widgets", {"src/outputs/snapshot", "src/uikit"}, Toolkit::widgets},
    {"src", {"src/ui"}, Toolkit::widgets},
};

/// Libraries that one folder alone may include, by the beginning of a header's name.
const std::vector<std::pair<std::string, std::string>> reservedHeaders{
    {"QDBus", "src/platform/linux/"},      {"QtDBus", "src/platform/linux/"},
    {"libsecret/", "src/platform/linux/"}, {"systemd/", "src/platform/linux/"},
    {"glib", "src/platform/linux/"},       {"gio/", "src/platform/linux/"},
    {"xcb/", "src/widgets/desktop/"},      {"LayerShellQt/", "src/widgets/desktop/"},
    {"QNetworkAccessManager", "src/net/"}, {"QSvg", "src/theme/"},
    {"QPrint", "src/ui/print/"},
};

const Module *moduleOf(const std::string &path) {
    const auto found = std::ranges::find_if(
        modules, [&](const Module &module) { return path.starts_with(module.folder + "/"); });
    return found != modules.end() ? &*found : nullptr;
}

/// Dependencies are transitive.
bool mayInclude(const Module &from, const std::string &folder) {
    return from.folder == folder || from.dependsOn.contains(folder) ||
        std::ranges::any_of(from.dependsOn, [&](const std::string &below) {
               return mayInclude(*moduleOf(below + "/"), folder);
           });
}

std::string toolkitFault(const Module &module, const std::string &file, const std::string &header) {
    static const std::regex gui(R"(^(QtGui/|QPainter|QColor|QFont|QPalette|QIcon|QPixmap|QImage))");
    static const std::regex widgets(
        R"(^(QtWidgets/|QApplication|QWidget|QLabel|QDialog|Q\w*View$))");
    const bool isQt = header.starts_with("Q");
    const bool isSource = !file.ends_with(".h");
    if (isQt &&
        (module.toolkit == Toolkit::none || (module.toolkit == Toolkit::sources && !isSource)))
        return "may not know Qt: " + header;
    if (module.toolkit < Toolkit::gui && std::regex_search(header, gui))
        return "may not know Qt Gui: " + header;
    if (module.toolkit < Toolkit::widgets && std::regex_search(header, widgets))
        return "may not know Qt Widgets: " + header;
    return {};
}

/// What is wrong with one include line of a file, or nothing.
std::string fault(const std::string &file, const std::string &line) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::smatch match;
    if (!std::regex_search(line, match, include))
        return {};
    const Module *module = moduleOf(file);
    if (module == nullptr)
        return "belongs to no module";
    const std::string name = match[2];
    for (const auto &[header, folder] : reservedHeaders) {
        if (name.starts_with(header) && !file.starts_with(folder))
            return "only " + folder + " may include " + name;
    }
    if (match[1] == "<")
        return toolkitFault(*module, file, name);
    if (name.starts_with("generated/"))
        return {};
    const Module *target = moduleOf("src/" + name);
    if (target == nullptr)
        return "includes no module: " + name;
    return mayInclude(*module, target->folder) ? "" : "may not include " + name;
}

TEST(Includes, PointToModulesBelow) {
    const fs::path root = ELLWYND_SOURCE_DIR;
    std::size_t lines = 0;
    for (const auto &entry : fs::recursive_directory_iterator(root / "src")) {
        const std::string extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp")
            continue;
        const std::string file = fs::relative(entry.path(), root).generic_string();
        std::ifstream stream(entry.path());
        for (std::string line; std::getline(stream, line);) {
            EXPECT_EQ(fault(file, line), "") << file << ": " << line;
            ++lines;
        }
    }
    EXPECT_GT(lines, 1000U) << "the sources were not found";
}

TEST(Includes, FaultsAreSeen) {
    struct Case {
        const char *file;
        const char *included;
    };
    for (const auto &[file, included] : std::vector<Case>{
             {"src/risk/a.cpp", "\"app/connection.h\""},
             {"src/risk/a.cpp", "<QString>"},
             {"src/base/a.h", "<QString>"},
             {"src/cli/a.cpp", "\"ui/mainwindow.h\""},
             {"src/uikit/a.cpp", "\"risk/risklevel.h\""},
             {"src/app/a.cpp", "<QPainter>"},
             {"src/theme/a.cpp", "<QLabel>"},
             {"src/app/a.cpp", "<QDBusConnection>"}})
        EXPECT_NE(fault(file, std::string("#include ") + included), "") << file << included;
}

} // namespace
