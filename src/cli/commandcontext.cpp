#include "cli/commandcontext.h"

#include "app/courses/connector.h"
#include "app/roster/rosterview.h"
#include "cli/hiddeninput.h"
#include "cli/terminaltext.h"
#include "platform/folders/directories.h"

#include <fmt/format.h>

#include <istream>
#include <ostream>

namespace ellwynd::cli {

/// How long a command waits for the synced folder.
static constexpr std::chrono::seconds cloudLimit{5};

CommandContext::CommandContext(
    std::istream &in, std::ostream &out, std::ostream &err, std::filesystem::path preferencesFile,
    PreferenceMap arguments, Terminal terminal)
    : out(out),
      err(err),
      in(in),
      preferencesFile(std::move(preferencesFile)),
      arguments(std::move(arguments)),
      keyboard(terminal.keyboard),
      columns(terminal.outputColumns),
      progressLine(err, std::move(terminal)) {}

CommandContext::~CommandContext() {
    cloudQueue.finish(cloudLimit);
}

std::string CommandContext::readSecret(std::string_view prompt) {
    std::string line;
    if (keyboard < 0) {
        std::getline(in, line);
        return line;
    }
    err << prompt << std::flush;
    const HiddenInput hidden(keyboard);
    std::getline(in, line);
    return line;
}

UserDefaults &CommandContext::defaults() {
    if (!openedDefaults)
        openedDefaults = std::make_unique<UserDefaults>(preferencesFile, arguments);
    return *openedDefaults;
}

Stores &CommandContext::stores() {
    if (!openedStores)
        openedStores = std::make_unique<Stores>(defaults(), directories::data(), now);
    return *openedStores;
}

bool CommandContext::isSaved() const {
    const bool storesAreSaved = !openedStores ||
        (openedStores->history.isSaved() && openedStores->contacts.isSaved() &&
         openedStores->templates.isSaved());
    return storesAreSaved && (!openedDefaults || openedDefaults->isSaved());
}

TrendSync &CommandContext::trends() {
    if (!trendSync) {
        trendSync = std::make_unique<TrendSync>(defaults());
        const std::string folder = defaults().value(preferences::cloudStoreFolder);
        if (!folder.empty()) {
            cloud = std::make_unique<SyncedFolder>(
                folder, cloudQueue, defaults().value(preferences::syncedFolderMark));
            trendSync->setStore(cloud.get());
            trendSync->start();
            cloudQueue.finish(cloudLimit);
        }
    }
    return *trendSync;
}

std::shared_ptr<CanvasReading> CommandContext::connect() {
    const Connector connector(defaults(), tokenStore, canvasSession);
    auto source = finish("Reading the Keychain…", connector.open(UnlockPrompt::allowed));
    if (!source)
        throw NotConnected();
    return source;
}

std::vector<Course> fetchCourses(CommandContext &context, CanvasReading &source) {
    ListRead<Course> list = context.finish("Reading the course list…", source.fetchCourses());
    if (list.cutShort)
        context.err << cutShortText("courses", *list.cutShort) << "\n";
    return std::move(list.records);
}

void printNotes(CommandContext &context, std::span<const ScoredCourse *const> courses) {
    for (const std::string &note : notesOf(courses))
        context.err << terminalText(note) << "\n";
}

void requireSaved(CommandContext &context) {
    if (!context.isSaved())
        throw Failure("The change couldn't be saved.");
}

std::int64_t parseID(const std::string &word, const char *what) {
    const PreferenceValue value = parsePreferenceValue(word);
    const auto *id = std::get_if<std::int64_t>(&value);
    if (id == nullptr)
        throw UsageError(fmt::format("{} is not a {} id", word, what));
    return *id;
}

} // namespace ellwynd::cli
