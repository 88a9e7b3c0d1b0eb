// The teacher's message templates.
#pragma once

#include "base/sharedstore.h"
#include "outputs/messages/messagetemplate.h"

#include <QObject>

namespace ellwynd {

/// The templates in the order of the menus. Stored in one file, "MessageTemplates.json", which is
/// rewritten after each change and may be shared with other processes. Used on the main thread.
///
/// The sample college uses the teacher's own file too. Changes of other processes are loaded before
/// a change is applied; a change that cannot be saved is kept in memory and saved with the next
/// one.
class TemplateStore : public QObject {
    Q_OBJECT

  public:
    /// The templates that a change removed and added, for undoing it.
    struct Removal {
        struct Removed {
            std::size_t index = 0;
            MessageTemplate message;
        };
        /// By index before the change, ascending.
        std::vector<Removed> removed;
        /// The added templates as they were when added.
        std::vector<MessageTemplate> added;
    };

    /// Reads the file. Without one, the templates are the default ones, and nothing is written
    /// before the first change. A file that cannot be read is set aside and counts as missing; one
    /// that is unavailable is merged with the changes once it can be read.
    explicit TemplateStore(const std::filesystem::path &directory, Clock now = systemNow);
    ~TemplateStore() override;

    [[nodiscard]] const std::vector<MessageTemplate> &templates() const { return store.contents(); }
    /// Null for an unknown id. Valid until the next change.
    [[nodiscard]] const MessageTemplate *find(const std::string &id) const;

    /// Appends a template.
    void add(MessageTemplate message);
    /// Appends a template named "Untitled", and returns its id.
    std::string addUntitled();
    /// Does nothing for an unknown id. A template that another process has deleted meanwhile is
    /// added again, so that no text is lost.
    void update(const std::string &id, const std::string &name, const std::string &body);
    /// Appends a copy and returns its id; empty for an unknown id.
    std::string duplicate(const std::string &id);
    /// Does nothing for an unknown id.
    Removal remove(const std::string &id);
    /// Removes the templates that have the name of a default one, and inserts the default ones
    /// before the others.
    Removal restoreDefaults();
    /// Inserts the removed templates again unless they exist, and removes the added ones unless
    /// they were edited.
    void undo(const Removal &removal);

    /// Whether all changes are on the disk.
    [[nodiscard]] bool isSaved() const { return store.isSaved(); }
    /// Tries to save changes that could not be saved.
    void saveUnsaved();

  Q_SIGNALS:
    void templatesDidChange();

  private:
    using Store = SharedStore<std::vector<MessageTemplate>>;

    void commit(Store::Transaction transaction, Store::Change change);

    Store store;
    Clock now;
};

} // namespace ellwynd
