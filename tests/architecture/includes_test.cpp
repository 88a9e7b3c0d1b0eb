// Rooms may look only at rooms below them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Room {
    std::string folder;
    std::set<std::string> standsOn;
    bool qt = true;
    bool widgets = false;
};

/// Longest folder first, so that a file belongs to its innermost room.
const std::vector<Room> rooms{
    {"src/canvas/records", {"src/base"}, false},
    {"src/outputs/snapshot", {"src/platform"}},
    {"src/base", {}},
    {"src/preferences", {"src/base"}},
    {"src/platform", {"src/preferences"}},
    {"src/net", {"src/base"}},
    {"src/canvas", {"src/canvas/records", "src/net", "src/platform"}},
    {"src/risk", {"src/canvas/records", "src/preferences"}, false},
    {"src/memory", {"src/risk", "src/platform"}},
    {"src/outputs", {"src/memory", "src/outputs/snapshot"}},
    {"src/app", {"src/outputs", "src/canvas", "src/risk"}},
    {"src/theme", {"src/preferences"}},
    {"src/uikit", {"src/theme"}, true, true},
    {"src/help", {"src/base"}},
    {"src/ui", {"src/app", "src/uikit", "src/help"}, true, true},
    {"src/cli", {"src/app"}},
    {"src/widgets", {"src/outputs/snapshot", "src/uikit"}, true, true},
    {"src", {"src/ui"}, true, true},
};

const Room *roomOf(const std::string &path) {
    const auto found = std::ranges::find_if(
        rooms, [&](const Room &room) { return path.starts_with(room.folder + "/"); });
    return found != rooms.end() ? &*found : nullptr;
}

/// A room stands on what its rooms stand on.
bool mayInclude(const Room &from, const std::string &folder) {
    return from.folder == folder || from.standsOn.contains(folder) ||
        std::ranges::any_of(from.standsOn, [&](const std::string &below) {
               const auto room = std::ranges::find(rooms, below, &Room::folder);
               return room != rooms.end() && mayInclude(*room, folder);
           });
}

/// What is wrong with one include line of a file, or nothing.
std::string fault(const std::string &file, const std::string &line) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::smatch match;
    if (!std::regex_search(line, match, include))
        return {};
    const Room *room = roomOf(file);
    if (room == nullptr)
        return "stands in no room";
    const std::string name = match[2];
    if (match[1] == "<") {
        const bool qtHeader = name.starts_with("Q") || name.starts_with("QCoro");
        // The platform room itself speaks Qt in its sources alone.
        const bool header = file.ends_with(".h");
        if (qtHeader &&
            (!room->qt ||
             (header &&
              (room->folder == "src/base" || room->folder == "src/preferences" ||
               (room->folder == "src/platform" && !file.starts_with("src/platform/session/") &&
                !file.starts_with("src/platform/linux/"))))))
            return "may not know Qt: " + name;
        if (!room->widgets &&
            (name.starts_with("QtWidgets/") || name == "QApplication" || name == "QWidget"))
            return "may not know widgets: " + name;
        return {};
    }
    if (name.starts_with("generated/"))
        return {};
    const Room *target = roomOf("src/" + name);
    if (target == nullptr)
        return "includes no room: " + name;
    return mayInclude(*room, target->folder) ? "" : "may not include " + name;
}

TEST(Includes, PointToTheRoomsBelow) {
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
    EXPECT_NE(fault("src/risk/a.cpp", "#include \"app/connection.h\""), "");
    EXPECT_NE(fault("src/risk/a.cpp", "#include <QString>"), "");
    EXPECT_NE(fault("src/platform/a.h", "#include <QString>"), "");
    EXPECT_NE(fault("src/cli/a.cpp", "#include \"ui/mainwindow.h\""), "");
    EXPECT_NE(fault("src/widgets/a.cpp", "#include \"risk/risklevel.h\""), "");
    EXPECT_EQ(fault("src/cli/a.cpp", "#include \"canvas/records/records.h\""), "");
    EXPECT_EQ(fault("src/platform/a.cpp", "#include <QDateTime>"), "");
}

} // namespace
