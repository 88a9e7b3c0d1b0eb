// The two files that the program writes for its widgets, and the one that they read.
#pragma once

#include "outputs/snapshot/widgetsnapshot.h"

#include <filesystem>
#include <functional>

namespace ellwynd {

namespace widgetFiles {

inline constexpr std::string_view versionOne = "WidgetSnapshot.json";
inline constexpr std::string_view versionTwo = "WidgetSnapshotV2.json";

} // namespace widgetFiles

/// The program's side. Each file is replaced as a whole, and both or neither change; failures are
/// logged and the widgets keep what they have.
class WidgetSnapshotWriter {
  public:
    /// @param container the folder shared with the widgets; made when it is first written to.
    /// @param reload asks the platform to draw all widgets again, after each change.
    WidgetSnapshotWriter(std::filesystem::path container, std::function<void()> reload);

    /// Writes both versions. A snapshot that lacks its automatic term is not written, so that the
    /// widgets keep the previous complete numbers.
    void write(const WidgetSnapshotFile &file) const;

    /// Deletes both files: the teacher signed out.
    void clear() const;

  private:
    std::filesystem::path container;
    std::function<void()> reload;
};

/// The widgets' side: what the version-2 file holds. Absent when there is none, or none that can be
/// read, or one above 4 MiB: then there is nothing to show.
[[nodiscard]] std::optional<WidgetSnapshotFile>
readWidgetSnapshot(const std::filesystem::path &container);

} // namespace ellwynd
