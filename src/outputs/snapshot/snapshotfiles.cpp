#include "outputs/snapshot/snapshotfiles.h"

#include "base/files.h"
#include "base/log.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"widgets"};
/// A term of forty courses takes some 8 KiB.
constexpr std::size_t fileLimit = 4UL * 1024 * 1024;

void logFailure(std::string_view problem) {
    logger.error(fmt::format("Widget snapshot failed: {}", problem));
}

} // namespace

WidgetSnapshotWriter::WidgetSnapshotWriter(
    std::filesystem::path container, std::function<void()> reload)
    : container(std::move(container)), reload(std::move(reload)) {}

void WidgetSnapshotWriter::write(const WidgetSnapshotFile &file) const {
    const auto automatic = automaticSnapshot(file);
    if (!automatic) {
        logger.info("Widget snapshot skipped: automatic term incomplete");
        return;
    }
    try {
        // Both temporary files are written before either file is replaced.
        files::Replacement two(container / widgetFiles::versionTwo, encode(file));
        files::Replacement one(container / widgetFiles::versionOne, encode(*automatic));
        two.commitWith(one);
    } catch (const FileError &error) {
        return logFailure(error.what());
    } catch (const std::exception &) {
        // The message of a library might quote a name.
        return logFailure("The counts could not be encoded.");
    }
    reload();
    logger.info(fmt::format("Widget snapshot updated: {} term(s), counts only", file.terms.size()));
}

void WidgetSnapshotWriter::hideNames() const {
    rename([](WidgetCourseSummary &course) { course.name.reset(); });
}

void WidgetSnapshotWriter::showNames(const std::map<std::int64_t, std::string> &names) const {
    rename([&names](WidgetCourseSummary &course) {
        const auto found = names.find(course.id);
        if (found != names.end())
            course.name = found->second;
    });
}

void WidgetSnapshotWriter::rename(
    const std::function<void(WidgetCourseSummary &course)> &change) const {
    try {
        const auto before = readWidgetSnapshot(container);
        if (!before) {
            const auto exists = [this](std::string_view name) {
                return files::stamp(container / name).size != files::Stamp::absent;
            };
            if (exists(widgetFiles::versionTwo) || exists(widgetFiles::versionOne))
                clear();
            return;
        }
        WidgetSnapshotFile after = *before;
        for (WidgetTermSummary &term : after.terms)
            std::ranges::for_each(term.courses, change);
        if (after != *before)
            write(after);
    } catch (const FileError &error) {
        logFailure(error.what());
    }
}

void WidgetSnapshotWriter::clear() const {
    bool cleared = true;
    for (const auto name : {widgetFiles::versionTwo, widgetFiles::versionOne}) {
        try {
            files::removeLeftovers(container / name);
            files::remove(container / name);
        } catch (const FileError &error) {
            logFailure(error.what());
            cleared = false;
        }
    }
    reload();
    if (cleared)
        logger.info("Widget snapshot cleared");
}

std::optional<WidgetSnapshotFile> readWidgetSnapshot(const std::filesystem::path &container) {
    try {
        const auto text = files::read(container / widgetFiles::versionTwo, fileLimit);
        return text ? decodeWidgetSnapshotFile(*text) : std::nullopt;
    } catch (const FileUnavailable &) {
        throw;
    } catch (const FileError &error) {
        logger.error(error.what());
        return std::nullopt;
    }
}

} // namespace ellwynd
