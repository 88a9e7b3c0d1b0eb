// A store whose file several processes share: loaded, merged and saved.
#pragma once

#include "base/date.h"
#include "base/log.h"
#include "base/sharedfile.h"

#include <functional>
#include <vector>

namespace ellwynd {

/// What a store does with a file that it cannot read.
enum class UnreadableFile {
    /// Leave it in place; the next save replaces it.
    replace,
    /// Set it aside. If that fails, the next save replaces it.
    setAside,
    /// Set it aside. If that fails, save nothing until it succeeds.
    setAsideBeforeSaving,
};

/// How a store uses its file. The views must be of string literals.
struct StoreFileOptions {
    std::string_view fileName;
    /// In bytes; a larger file counts as unreadable.
    std::size_t maxSize = 0;
    Log log;
    /// The name of the contents in log lines: "roster history".
    std::string_view contents;
    /// The name of an unreadable file in log lines about setting it aside.
    std::string_view unreadableName = "it";
    UnreadableFile unreadable = UnreadableFile::replace;
    /// Whether the contents in memory are cleared when another process removed the file.
    bool removalClears = true;
};

/// The file of a store. Failures are logged, never thrown.
class StoreFile {
  public:
    StoreFile(StoreFileOptions options, const std::filesystem::path &directory, Clock now);

    [[nodiscard]] bool exists() const { return file.exists(); }
    [[nodiscard]] bool removalClears() const { return options.removalClears; }
    [[nodiscard]] SharedFile::Transaction begin() { return file.begin(); }
    /// Passes the text to `decode`, which throws if it is not valid. False for such a text, and
    /// when there is no file.
    bool load(const std::function<void(std::string_view)> &decode);
    bool save(const std::function<std::string()> &encode);
    void remove() { file.remove(); }

  private:
    void setAside();

    StoreFileOptions options;
    SharedFile file;
    Clock now;
    /// Set while an unreadable file could not be set aside.
    bool unreadableRemains = false;
};

/// Contents that are written as a whole after each change. Changes that another process has saved
/// are loaded before a change is applied. A change that cannot be saved is kept in memory and
/// applied again with the next one.
template<class T>
class SharedStore {
  public:
    /// A modification of the contents. One that could not be saved is also applied to contents
    /// loaded later.
    using Change = std::function<void(T &)>;
    /// Locks the file from merging other processes' changes until a change is committed. Absent for
    /// contents in memory alone.
    using Transaction = std::optional<SharedFile::Transaction>;

    struct Codec {
        /// Throws for a text that is not valid.
        std::function<T(std::string_view)> decode;
        std::function<std::string(const T &)> encode;
        /// Removes expired entries, and returns whether there were any; null keeps everything.
        std::function<bool(T &)> prune;
    };

    /// Does not read the file yet.
    /// @param directory the file's folder; absent for contents in memory alone.
    SharedStore(
        StoreFileOptions options, Codec codec,
        const std::optional<std::filesystem::path> &directory, Clock clock)
        : codec(std::move(codec)) {
        if (directory)
            file.emplace(std::move(options), *directory, clock);
    }

    /// Reads the file. False when it does not exist or cannot be read.
    bool open() {
        if (!file || !file->exists())
            return false;
        const SharedFile::Transaction transaction = file->begin();
        return load();
    }

    [[nodiscard]] const T &contents() const { return current; }
    /// Changes whenever the contents may have changed.
    [[nodiscard]] std::uint64_t revision() const { return revisionNumber; }

    void change(Change change) { commit(begin(), std::move(change)); }

    [[nodiscard]] Transaction begin() {
        Transaction transaction;
        if (!file)
            return transaction;
        transaction.emplace(file->begin());
        if (merge(transaction->externalChange)) {
            for (const Change &change : unsaved)
                apply(change);
        }
        return transaction;
    }

    /// Ends the transaction.
    void commit(Transaction transaction, Change change) {
        const Transaction held = std::move(transaction);
        apply(change);
        unsaved.push_back(std::move(change));
        if (save())
            unsaved.clear();
    }

    /// Replaces the contents in memory without saving them.
    void fill(T contents) {
        current = std::move(contents);
        ++revisionNumber;
    }

    /// Clears the contents and removes the file.
    void clear() {
        fill({});
        unsaved.clear();
        if (file)
            file->remove();
    }

  private:
    /// False when there is nothing to read; the contents are then unchanged.
    bool load() {
        if (!file->load([this](std::string_view text) { fill(codec.decode(text)); }))
            return false;
        if (codec.prune && codec.prune(current))
            save();
        return true;
    }

    /// Applies another process's change. True if the contents were replaced.
    bool merge(ExternalChange change) {
        if (change == ExternalChange::replaced)
            return load();
        const bool cleared = change == ExternalChange::removed && file->removalClears();
        if (cleared)
            fill({});
        return cleared;
    }

    void apply(const Change &change) {
        change(current);
        ++revisionNumber;
    }

    bool save() {
        return !file || file->save([this] { return codec.encode(current); });
    }

    Codec codec;
    std::optional<StoreFile> file;
    T current;
    std::uint64_t revisionNumber = 0;
    /// Changes whose save failed.
    std::vector<Change> unsaved;
};

} // namespace ellwynd
