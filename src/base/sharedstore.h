// A store whose file several processes share: loaded, merged and saved.
#pragma once

#include "base/date.h"
#include "base/log.h"
#include "base/sharedfile.h"

#include <chrono>
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
    /// How long files that were set aside are kept; absent for no limit.
    std::optional<std::chrono::seconds> copiesKeptFor = std::nullopt;
};

/// The file of a store. Failures are logged, never thrown; the log quotes nothing of the contents.
///
/// A file that is unavailable, such as one without access, is neither set aside nor replaced: until
/// it can be read, nothing is saved.
class StoreFile {
  public:
    StoreFile(StoreFileOptions options, const std::filesystem::path &directory, Clock now);

    [[nodiscard]] bool mayExist() const { return file.mayExist(); }
    [[nodiscard]] bool removalClears() const { return options.removalClears; }
    [[nodiscard]] SharedFile::Transaction begin();
    /// Passes the text to `decode`, which throws if it is not valid. False for such a text, for a
    /// file that is unavailable, and when there is no file.
    bool load(const std::function<void(std::string_view)> &decode);
    bool save(const std::function<std::string()> &encode);
    /// Removes the file and the copies that were set aside. False if the file remains.
    bool remove();
    /// Removes the copies that were kept long enough.
    void removeOldCopies() const;

  private:
    std::optional<std::string> read();
    void setAside();
    [[nodiscard]] long long secondsSince1970() const;

    StoreFileOptions options;
    SharedFile file;
    Clock now;
    /// Set while an unreadable file could not be set aside.
    bool unreadableRemains = false;
    /// Set while the file cannot be read for a reason that may pass.
    bool unavailable = false;
};

/// Contents that are written as a whole after each change. Changes that another process has saved
/// are loaded before a change is applied. A change that cannot be saved is kept in memory, and
/// saved with the next one or by `saveUnsaved`.
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

    /// Tries once more to save what could not be saved.
    ~SharedStore() { saveUnsaved(); }
    SharedStore(const SharedStore &) = delete;
    SharedStore &operator=(const SharedStore &) = delete;

    /// Reads the file. False when it does not exist or cannot be read.
    bool open() {
        if (!file)
            return false;
        file->removeOldCopies();
        if (!file->mayExist())
            return false;
        const SharedFile::Transaction transaction = file->begin();
        return load();
    }

    [[nodiscard]] const T &contents() const { return current; }
    /// Changes whenever the contents may have changed.
    [[nodiscard]] std::uint64_t revision() const { return revisionNumber; }

    /// Whether all changes are on the disk; true for contents in memory alone.
    [[nodiscard]] bool isSaved() const { return unsaved.empty(); }

    void change(Change change, Change again = {}) {
        commit(begin(), std::move(change), std::move(again));
    }

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
    /// @param again what is applied instead of `change` to contents loaded later, if that differs.
    void commit(Transaction transaction, Change change, Change again = {}) {
        const Transaction held = std::move(transaction);
        apply(change);
        unsaved.push_back(again ? std::move(again) : std::move(change));
        if (save())
            unsaved.clear();
    }

    /// Tries to save the changes that could not be saved.
    /// @return whether there were any.
    bool saveUnsaved() {
        if (isSaved())
            return false;
        const Transaction held = begin();
        if (save())
            unsaved.clear();
        return true;
    }

    /// Replaces the contents in memory without saving them.
    void fill(T contents) {
        current = std::move(contents);
        ++revisionNumber;
    }

    /// Clears the contents, and removes the file and the copies that were set aside. A file that
    /// cannot be removed is emptied by the next save.
    void clear() {
        fill({});
        unsaved.clear();
        if (file && !file->remove())
            unsaved.push_back([](T &contents) { contents = {}; });
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
    /// Changes whose save failed, in the form that is applied to contents loaded later.
    std::vector<Change> unsaved;
};

} // namespace ellwynd
