#include "outputs/messages/templatestore.h"

#include "base/log.h"
#include "outputs/messages/templatefile.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"templates"};
constexpr std::size_t largestFile = 64UL * 1024 * 1024;

using Templates = std::vector<MessageTemplate>;

Templates::iterator found(Templates &templates, const std::string &id) {
    return std::ranges::find(templates, id, &MessageTemplate::id);
}

void eraseByID(Templates &templates, const std::string &id) {
    if (const auto place = found(templates, id); place != templates.end())
        templates.erase(place);
}

} // namespace

TemplateStore::TemplateStore(const std::filesystem::path &directory, Clock clock)
    : file(directory / "MessageTemplates.json", largestFile), now(clock) {
    bool loaded = false;
    if (file.exists()) {
        const SharedFile::Turn turn = file.take();
        loaded = load();
    }
    if (!loaded)
        all = defaultTemplates(now());
}

TemplateStore::~TemplateStore() = default;

// ---- The file ----------------------------------------------------------------------------------

/// Replaces what is in memory by what the file holds. False when there is nothing to read: memory
/// is then as it was, and an unreadable file out of the way.
bool TemplateStore::load() {
    try {
        const auto text = file.read();
        if (!text)
            return false;
        all = decodeTemplates(*text);
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't read message templates: {}", error.what()));
        setAside();
        return false;
    }
    return true;
}

void TemplateStore::setAside() {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now()).time_since_epoch().count();
    try {
        const auto aside = file.setAside(seconds);
        logger.error(fmt::format("Set the unreadable file aside at {}", aside.filename().string()));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't set the unreadable file aside: {}", error.what()));
    }
}

/// Held until a change is saved. What another process wrote stands, and what could not be saved
/// here is applied to it again. No process deletes the file, so one that is gone says nothing about
/// the templates.
SharedFile::Turn TemplateStore::takeTurn() {
    SharedFile::Turn turn = file.take();
    if (turn.since == SharedFile::Since::replaced && load()) {
        for (const Edit &edit : unsaved)
            edit(all);
    }
    return turn;
}

bool TemplateStore::save() {
    try {
        file.replace(encodeTemplates(all));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't save message templates: {}", error.what()));
        return false;
    }
    return true;
}

void TemplateStore::commit(SharedFile::Turn turn, Edit edit) {
    {
        const SharedFile::Turn held = std::move(turn);
        edit(all);
        unsaved.push_back(std::move(edit));
        if (save())
            unsaved.clear();
    }
    // Whoever hears of it may well make the next change.
    Q_EMIT templatesDidChange();
}

// ---- Changes -----------------------------------------------------------------------------------

const MessageTemplate *TemplateStore::find(const std::string &id) const {
    const auto place = std::ranges::find(all, id, &MessageTemplate::id);
    return place != all.end() ? &*place : nullptr;
}

void TemplateStore::add(MessageTemplate message) {
    commit(takeTurn(), [message = std::move(message)](Templates &templates) {
        templates.push_back(message);
    });
}

std::string TemplateStore::addUntitled() {
    MessageTemplate message = newTemplate("Untitled", "Hi {first_name},\n\n", now());
    const std::string id = message.id;
    add(std::move(message));
    return id;
}

void TemplateStore::update(
    const std::string &id, const std::string &name, const std::string &body) {
    const MessageTemplate *known = find(id);
    if (known == nullptr)
        return;
    MessageTemplate edited = *known;
    edited.name = name;
    edited.body = body;
    edited.updatedAt = now();
    commit(takeTurn(), [edited = std::move(edited)](Templates &templates) {
        if (const auto place = found(templates, edited.id); place != templates.end())
            *place = edited;
        else
            templates.push_back(edited);
    });
}

std::string TemplateStore::duplicate(const std::string &id) {
    const MessageTemplate *known = find(id);
    if (known == nullptr)
        return {};
    MessageTemplate copy = newTemplate(known->name + " Copy", known->body, now());
    std::string copyID = copy.id;
    add(std::move(copy));
    return copyID;
}

TemplateStore::Removal TemplateStore::remove(const std::string &id) {
    const MessageTemplate *known = find(id);
    if (known == nullptr)
        return {};
    const std::string knownID = known->id;
    SharedFile::Turn turn = takeTurn();
    Removal removal;
    // Gone already where another process was first.
    if (const auto place = found(all, knownID); place != all.end())
        removal.removed.push_back({std::size_t(place - all.begin()), *place});
    commit(std::move(turn), [knownID](Templates &templates) { eraseByID(templates, knownID); });
    return removal;
}

TemplateStore::Removal TemplateStore::restoreDefaults() {
    SharedFile::Turn turn = takeTurn();
    Removal removal{.removed = {}, .added = defaultTemplates(now())};
    const auto isReplaced = [fresh = removal.added](const MessageTemplate &each) {
        return std::ranges::find(fresh, each.name, &MessageTemplate::name) != fresh.end();
    };
    for (std::size_t place = 0; place < all.size(); ++place) {
        if (isReplaced(all[place]))
            removal.removed.push_back({place, all[place]});
    }
    commit(std::move(turn), [isReplaced, fresh = removal.added](Templates &templates) {
        std::erase_if(templates, isReplaced);
        templates.insert(templates.begin(), fresh.begin(), fresh.end());
    });
    return removal;
}

void TemplateStore::undo(const Removal &removal) {
    commit(takeTurn(), [removal](Templates &templates) {
        for (const MessageTemplate &added : removal.added) {
            if (const auto place = found(templates, added.id);
                place != templates.end() && *place == added)
                templates.erase(place);
        }
        for (const auto &[place, message] : removal.removed) {
            const auto at = std::ptrdiff_t(std::min(place, templates.size()));
            templates.insert(templates.begin() + at, message);
        }
    });
}

} // namespace ellwynd
