// The teacher's message templates.
#pragma once

#include "base/sharedstore.h"
#include "outputs/messages/messagetemplate.h"

#include <QObject>

namespace ellwynd {

/// The templates in the order of the menus. Kept in one file, "MessageTemplates.json", rewritten
/// whole after each change; two windows may share it. Lives on the main thread.
///
/// The file is the teacher's own also where students are invented. What another process wrote is
/// taken over before a change is applied; a change that cannot be saved stays in memory and is
/// saved with the next.
class TemplateStore : public QObject {
    Q_OBJECT

  public:
    /// What a change took away and put in its place, for undoing it.
    struct Removal {
        struct Removed {
            std::size_t index = 0;
            MessageTemplate message;
        };
        /// By index, which is that before the change.
        std::vector<Removed> removed;
        /// The templates that were added, as they were then.
        std::vector<MessageTemplate> added;
    };

    /// Reads the file at once. Without a file the templates are the shipped ones, and nothing is
    /// written before the first change; so they are when the file cannot be read, which is then set
    /// aside.
    explicit TemplateStore(const std::filesystem::path &directory, Clock clock = systemNow);
    ~TemplateStore() override;

    [[nodiscard]] const std::vector<MessageTemplate> &templates() const { return store.contents(); }
    /// Null for an id that is not known. Valid until the next change.
    [[nodiscard]] const MessageTemplate *find(const std::string &id) const;

    /// Appends it.
    void add(MessageTemplate message);
    /// Appends a template to begin with, and returns its id.
    std::string addUntitled();
    /// Nothing for an id that is not known. A template that another process deleted meanwhile comes
    /// back, so that no words are lost.
    void update(const std::string &id, const std::string &name, const std::string &body);
    /// Appends a copy and returns its id; empty for an id that is not known.
    std::string duplicate(const std::string &id);
    Removal remove(const std::string &id);
    /// The shipped templates first, in place of every template that has one of their names, then
    /// the others.
    Removal restoreDefaults();
    /// Puts back what a change took away. What it added goes, unless it was edited since.
    void undo(const Removal &removal);

  Q_SIGNALS:
    void templatesDidChange();

  private:
    using Store = SharedStore<std::vector<MessageTemplate>>;

    void commit(Store::Transaction transaction, Store::Change change);

    Store store;
    Clock now;
};

} // namespace ellwynd
