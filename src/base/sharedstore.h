// A store whose file several processes share: loaded, merged and saved.
#pragma once

#include "base/date.h"
#include "base/log.h"
#include "base/sharedfile.h"

#include <chrono>
#include <functional>
#include <future>
#include <utility>
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

/// Starts work beside the thread of its caller; the future waits for its end.
using StartWork = std::function<std::future<void>(std::function<void()> work)>;

/// Starts work on a thread of its own.
[[nodiscard]] std::future<void> startThread(std::function<void()> work);

/// Contents that are written as a whole after each change. Changes that another process has saved
/// are loaded before a change is applied. A change that cannot be saved is kept in memory, and
/// saved with the next one or by `saveUnsaved`.
///
/// A store with large contents can save in the background instead. A change is then applied to the
/// contents in memory at once. A thread locks the file, applies the change to what another process
/// has saved meanwhile, and replaces the file; its result replaces the contents in memory. Changes
/// made during that are saved together after it. T is then copied for each save.
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
    ~SharedStore() {
        finishSaving();
        startWork = nullptr;
        saveUnsaved();
    }
    SharedStore(const SharedStore &) = delete;
    SharedStore &operator=(const SharedStore &) = delete;

    /// Calls a function on the thread of this object once its event loop runs; may be called from
    /// any thread.
    using Post = std::function<void(std::function<void()>)>;
    /// Reads and saves in the background from now on, except where the file is removed and at
    /// destruction.
    /// @param didSave called on the thread of this object when the contents were replaced by those
    ///        of the file, and when `isSaved` has changed. The calls end with this object.
    void workInBackground(StartWork newStartWork, Post newPost, std::function<void()> newDidSave) {
        if (!file)
            return;
        startWork = std::move(newStartWork);
        post = std::move(newPost);
        didSave = std::move(newDidSave);
    }

    /// Reads the file. False when it does not exist, cannot be read, or is read in the background.
    bool open() {
        if (!file)
            return false;
        file->removeOldCopies();
        if (!file->mayExist())
            return false;
        if (startWork) {
            startSaving(Reading::always);
            return false;
        }
        const SharedFile::Transaction transaction = file->begin();
        return load();
    }

    [[nodiscard]] const T &contents() const { return current; }
    /// False only if there is certainly no file.
    [[nodiscard]] bool mayHaveFile() const { return file && file->mayExist(); }
    /// Changes whenever the contents may have changed.
    [[nodiscard]] std::uint64_t revision() const { return revisionNumber; }

    /// Whether all changes are on the disk, or on their way to it after no failure; true for
    /// contents in memory alone.
    [[nodiscard]] bool isSaved() const { return unsaved.empty() || (isSaving() && !saveFailed); }

    void change(Change change, Change again = {}) {
        if (!startWork)
            return commit(begin(), std::move(change), std::move(again));
        apply(change);
        unsaved.push_back(again ? std::move(again) : std::move(change));
        startSaving();
    }

    [[nodiscard]] Transaction begin() {
        finishSaving();
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
    /// @return whether there were any, and the attempt has ended.
    bool saveUnsaved() {
        if (startWork) {
            if (!unsaved.empty())
                startSaving();
            return false;
        }
        finishSaving();
        if (unsaved.empty())
            return false;
        const Transaction held = begin();
        if (save())
            unsaved.clear();
        return true;
    }

    /// Replaces the contents in memory without saving them.
    void fill(T contents) {
        finishSaving();
        replaceContents(std::move(contents));
    }

    /// Clears the contents, and removes the file and the copies that were set aside. A file that
    /// cannot be removed is emptied by the next save.
    void clear() {
        fill({});
        unsaved.clear();
        saveFailed = false;
        if (file && !file->remove())
            unsaved.push_back([](T &contents) { contents = {}; });
    }

  private:
    enum class Reading { ifChanged, always };
    /// What a save in the background did.
    struct Saved {
        bool succeeded = false;
        /// Present if the file was read, or another process had removed it.
        std::optional<T> merged;
        /// How many of the unsaved changes it contains.
        std::size_t changes = 0;
    };

    void replaceContents(T contents) {
        current = std::move(contents);
        ++revisionNumber;
    }

    /// Absent when there is nothing to read.
    std::optional<T> read() {
        std::optional<T> contents;
        static_cast<void>(
            file->load([&](std::string_view text) { contents.emplace(codec.decode(text)); }));
        return contents;
    }

    /// False when there is nothing to read; the contents are then unchanged.
    bool load() {
        std::optional<T> contents = read();
        if (!contents)
            return false;
        replaceContents(std::move(*contents));
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
            replaceContents({});
        return cleared;
    }

    [[nodiscard]] bool isSaving() const { return saving.valid(); }

    /// Called on a thread of its own, which alone uses the file until `finishSaving`.
    Saved saveElsewhere(T contents, const std::vector<Change> &changes, Reading reading) {
        Saved result{.changes = changes.size()};
        const SharedFile::Transaction held = file->begin();
        if (reading == Reading::always || held.externalChange == ExternalChange::replaced)
            result.merged = read();
        else if (held.externalChange == ExternalChange::removed && file->removalClears())
            result.merged.emplace();
        bool isChanged = !changes.empty();
        if (result.merged) {
            isChanged = (codec.prune && codec.prune(*result.merged)) || isChanged;
            for (const Change &change : changes)
                change(*result.merged);
        }
        if (!isChanged) {
            result.succeeded = true;
            return result;
        }
        const T &newest = result.merged ? *result.merged : contents;
        result.succeeded = file->save([&] { return codec.encode(newest); });
        return result;
    }

    /// Unless a save is under way; the changes since its start are saved after it.
    void startSaving(Reading reading = Reading::ifChanged) {
        if (isSaving())
            return;
        ++saveNumber;
        saving = startWork(
            [this, reading, number = saveNumber, contents = current, changes = unsaved]() mutable {
                saved = saveElsewhere(std::move(contents), changes, reading);
                post([this, number] { savingDidEnd(number); });
            });
    }

    /// Waits for a save in the background, if there is one.
    /// @return whether observers have to be told.
    bool finishSaving() {
        if (!isSaving())
            return false;
        saving.get();
        Saved result = std::move(saved);
        const bool failedBefore = std::exchange(saveFailed, !result.succeeded);
        if (result.succeeded)
            unsaved.erase(unsaved.begin(), unsaved.begin() + std::ptrdiff_t(result.changes));
        if (result.merged) {
            replaceContents(std::move(*result.merged));
            // Those made while it was saved; all changes are in it if the save failed.
            const std::size_t begin = result.succeeded ? 0 : result.changes;
            for (std::size_t i = begin; i < unsaved.size(); ++i)
                apply(unsaved[i]);
        }
        return result.merged || failedBefore != saveFailed;
    }

    /// Does nothing if the save was waited for, and does not wait for a later one.
    void savingDidEnd(std::uint64_t number) {
        if (!isSaving() || number != saveNumber)
            return;
        const std::size_t before = unsaved.size();
        const bool changed = finishSaving();
        // Unless it would fail again at once.
        if (!unsaved.empty() && (unsaved.size() < before || !saveFailed))
            startSaving();
        if (changed)
            didSave();
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
    /// Null unless the store saves in the background.
    StartWork startWork;
    Post post;
    std::function<void()> didSave;
    /// Whether the last save in the background failed.
    bool saveFailed = false;
    /// Of the last save in the background.
    std::uint64_t saveNumber = 0;
    /// Written by that save, and read once it was waited for.
    Saved saved;
    /// Valid while a thread saves. Destroyed first: it waits for the thread.
    std::future<void> saving;
};

} // namespace ellwynd
