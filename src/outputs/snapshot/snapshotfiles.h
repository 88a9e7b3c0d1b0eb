// Writes and reads the widget snapshot files.
#pragma once

#include "outputs/snapshot/widgetsnapshot.h"

#include <filesystem>
#include <functional>
#include <map>

namespace ellwynd {

namespace widgetFiles {

inline constexpr std::string_view versionOne = "WidgetSnapshot.json";
inline constexpr std::string_view versionTwo = "WidgetSnapshotV2.json";

} // namespace widgetFiles

/// Writes the snapshot files, which are replaced together. Failures are logged; the previous files
/// are then kept.
class WidgetSnapshotWriter {
  public:
    /// @param container the folder shared with the widgets; created by the first write.
    /// @param reload called after each change to make all widgets reload.
    WidgetSnapshotWriter(std::filesystem::path container, std::function<void()> reload);

    /// Writes both versions. A snapshot without its automatic term is not written, so that the
    /// widgets keep the previous complete numbers.
    void write(const WidgetSnapshotFile &file) const;

    /// Removes the course names from both files, at once and with the same counts and time. Files
    /// that are no snapshot are deleted, since they may contain names.
    void hideNames() const;
    /// Puts names into both files, likewise. Courses without one keep theirs.
    /// @param names by course id.
    void showNames(const std::map<std::int64_t, std::string> &names) const;

    /// Deletes both files, when the teacher signs out.
    void clear() const;

  private:
    /// Writes the files again with another name of each course; unless nothing changes.
    void rename(const std::function<void(WidgetCourseSummary &course)> &change) const;

    std::filesystem::path container;
    std::function<void()> reload;
};

/// Reads the version-2 file. Absent if it does not exist, is not a snapshot, or is larger than
/// 4 MiB. @throws FileUnavailable when the file cannot be read for a reason that may pass
[[nodiscard]] std::optional<WidgetSnapshotFile>
readWidgetSnapshot(const std::filesystem::path &container);

} // namespace ellwynd
