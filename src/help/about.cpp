#include "help/about.h"

#include <fmt/format.h>

#include <array>

namespace ellwynd::about {

std::span<const std::string_view> promises() {
    using namespace std::string_view_literals;
    static constexpr std::array texts{
        "Nothing is ever sent, posted or filed in Canvas."sv,
        "No student’s name, grade or submission is written to the disk, unless you export a roster."sv,
        "Your access token is in your desktop’s keyring and nowhere else."sv,
        "No server but your institution’s Canvas is contacted about your students."sv,
    };
    return texts;
}

std::span<const Dependency> dependencies() {
    static constexpr std::array list{
        Dependency{"Qt", "windows, network, the desktop", "LGPL-3.0-only"},
        Dependency{"QCoro", "coroutines", "MIT"},
        Dependency{"simdjson", "Canvas’s JSON", "Apache-2.0"},
        Dependency{"nlohmann JSON", "small files", "MIT"},
        Dependency{"fmt", "text", "MIT"},
        Dependency{"GLib", "desktop entries", "LGPL-2.1-or-later"},
        Dependency{"libsecret", "the keyring", "LGPL-2.1-or-later"},
        Dependency{"libsystemd", "the journal", "LGPL-2.1-or-later"},
        Dependency{"CUPS", "print queues", "Apache-2.0 with an exception"},
        Dependency{"libxcb", "widgets on X11", "MIT"},
    };
    return list;
}

std::string page() {
    std::string text = fmt::format("{}\n\n## Promises\n\n", purpose);
    for (const std::string_view promise : promises())
        text += fmt::format("- {}\n", promise);
    text += "\n## Built on\n\n| Library | For | Licence |\n| --- | --- | --- |\n";
    for (const Dependency &dependency : dependencies())
        text +=
            fmt::format("| {} | {} | {} |\n", dependency.name, dependency.use, dependency.licence);
    return text;
}

} // namespace ellwynd::about
