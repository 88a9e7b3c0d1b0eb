#include "outputs/messages/templatestore.h"

#include "outputs/messages/templatefile.h"

#include <algorithm>

namespace ellwynd {

namespace {

using Templates = std::vector<MessageTemplate>;

Templates::iterator found(Templates &templates, const std::string &id) {
    return std::ranges::find(templates, id, &MessageTemplate::id);
}

void eraseByID(Templates &templates, const std::string &id) {
    if (const auto position = found(templates, id); position != templates.end())
        templates.erase(position);
}

StoreFileOptions fileOptions() {
    return {
        .fileName = "MessageTemplates.json",
        .maxSize = 64UL * 1024 * 1024,
        .log = Log("templates"),
        .contents = "message templates",
        .unreadableName = "the unreadable file",
        .unreadable = UnreadableFile::setAside,
        // The program never deletes this file, so a missing file does not clear the templates.
        .removalClears = false};
}

} // namespace

TemplateStore::TemplateStore(const std::filesystem::path &directory, Clock now)
    : store(
          fileOptions(), {.decode = decodeTemplates, .encode = encodeTemplates, .prune = {}},
          directory, now),
      now(now) {
    if (!store.open())
        store.fill(defaultTemplates(now()));
}

TemplateStore::~TemplateStore() = default;

void TemplateStore::saveUnsaved() {
    if (store.saveUnsaved())
        Q_EMIT templatesDidChange();
}

void TemplateStore::commit(Store::Transaction transaction, Store::Change change) {
    store.commit(std::move(transaction), std::move(change));
    Q_EMIT templatesDidChange();
}

const MessageTemplate *TemplateStore::find(const std::string &id) const {
    const auto position = std::ranges::find(templates(), id, &MessageTemplate::id);
    return position != templates().end() ? &*position : nullptr;
}

void TemplateStore::add(MessageTemplate message) {
    commit(store.begin(), [message = std::move(message)](Templates &templates) {
        templates.push_back(message);
    });
}

std::string TemplateStore::addUntitled() {
    MessageTemplate message = newTemplate("Untitled", "Hi {first_name},\n\n", now());
    std::string id = message.id;
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
    commit(store.begin(), [edited = std::move(edited)](Templates &templates) {
        if (const auto position = found(templates, edited.id); position != templates.end())
            *position = edited;
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
    Store::Transaction transaction = store.begin();
    Removal removal;
    // Another process may have removed it already.
    const Templates &all = templates();
    if (const auto position = std::ranges::find(all, knownID, &MessageTemplate::id);
        position != all.end())
        removal.removed.push_back({std::size_t(position - all.begin()), *position});
    commit(
        std::move(transaction), [knownID](Templates &templates) { eraseByID(templates, knownID); });
    return removal;
}

TemplateStore::Removal TemplateStore::restoreDefaults() {
    Store::Transaction transaction = store.begin();
    Removal removal{.removed = {}, .added = defaultTemplates(now())};
    const auto isReplaced = [fresh = removal.added](const MessageTemplate &each) {
        return std::ranges::find(fresh, each.name, &MessageTemplate::name) != fresh.end();
    };
    const Templates &all = templates();
    for (std::size_t index = 0; index < all.size(); ++index) {
        if (isReplaced(all[index]))
            removal.removed.push_back({index, all[index]});
    }
    commit(std::move(transaction), [isReplaced, fresh = removal.added](Templates &templates) {
        std::erase_if(templates, isReplaced);
        templates.insert(templates.begin(), fresh.begin(), fresh.end());
    });
    return removal;
}

void TemplateStore::undo(const Removal &removal) {
    commit(store.begin(), [removal](Templates &templates) {
        for (const MessageTemplate &added : removal.added) {
            if (const auto position = found(templates, added.id);
                position != templates.end() && *position == added)
                templates.erase(position);
        }
        for (const auto &[index, message] : removal.removed) {
            // Another process may have saved an edit of it, which added it again.
            if (found(templates, message.id) != templates.end())
                continue;
            const auto at = std::ptrdiff_t(std::min(index, templates.size()));
            templates.insert(templates.begin() + at, message);
        }
    });
}

} // namespace ellwynd
