// The contents of one file that several processes share: loaded, merged and saved.
#pragma once

#include "base/date.h"
#include "base/log.h"
#include "base/sharedfile.h"

#include <functional>
#include <vector>

namespace ellwynd {

/// What a store does with a file that it cannot read.
enum class UnreadableFile {
    /// It is left where it is, and the next save replaces it.
    replace,
    /// It is set aside. Where that fails, the next save replaces it.
    setAside,
    /// It is set aside. Where that fails, nothing is saved until it succeeds.
    setAsideBeforeSaving,
};

/// What a store makes of its file. Views are of string literals.
struct StoreFileOptions {
    std::string_view fileName;
    /// In bytes; a larger file counts as unreadable.
    std::size_t maxSize = 0;
    Log log;
    /// What the log calls the contents: "roster history".
    std::string_view contents;
    /// What the log calls an unreadable file when it is set aside.
    std::string_view unreadableName = "it";
    UnreadableFile unreadable = UnreadableFile::replace;
    /// Whether another process that removed the file meant its contents to be forgotten.
    bool removalClears = true;
};

/// The file of a store. Failures are logged, never thrown.
class StoreFile {
  public:
    StoreFile(StoreFileOptions options, const std::filesystem::path &directory, Clock clock);

    [[nodiscard]] bool exists() const { return file.exists(); }
    [[nodiscard]] bool removalClears() const { return options.removalClears; }
    [[nodiscard]] SharedFile::Transaction begin() { return file.begin(); }
    /// Hands the text to `decode`, which throws where it is not the store's. False for such a text,
    /// and when there is no file.
    bool load(const std::function<void(std::string_view)> &decode);
    bool save(const std::function<std::string()> &encode);
    void remove() { file.remove(); }

  private:
    void setAside();

    StoreFileOptions options;
    SharedFile file;
    Clock now;
    /// Set while an unreadable file is still in its place although it should be set aside.
    bool unreadableRemains = false;
};

/// Contents that are rewritten whole after each change. What another process saved since this one
/// looked is taken over before a change is applied; a change that cannot be saved stays in memory
/// and is applied again with the next.
template<class T>
class SharedStore {
  public:
    /// Applied to the contents, and again to what another process saved if it could not be saved.
    using Change = std::function<void(T &)>;
    /// Held from taking over what other processes did until a change is committed.
    using Transaction = std::optional<SharedFile::Transaction>;

    struct Codec {
        /// Throws for a text that is not the store's.
        std::function<T(std::string_view)> decode;
        std::function<std::string(const T &)> encode;
        /// Removes what is kept no longer, and returns whether there was any; a null function keeps
        /// everything.
        std::function<bool(T &)> prune;
    };

    /// Reads nothing yet.
    /// @param directory where the file lives; absent for contents in memory alone.
    SharedStore(
        StoreFileOptions options, Codec codec,
        const std::optional<std::filesystem::path> &directory, Clock clock)
        : codec(std::move(codec)) {
        if (directory)
            file.emplace(std::move(options), *directory, clock);
    }

    /// Reads the file. False when there is none, or none that can be read.
    bool open() {
        if (!file || !file->exists())
            return false;
        const SharedFile::Transaction transaction = file->begin();
        return load();
    }

    [[nodiscard]] const T &contents() const { return current; }
    /// Another number after each time that the contents may have changed.
    [[nodiscard]] std::uint64_t revision() const { return revisionNumber; }

    void change(Change change) { commit(begin(), std::move(change)); }

    [[nodiscard]] Transaction begin() {
        Transaction transaction;
        if (!file)
            return transaction;
        transaction.emplace(file->begin());
        if (takeOver(transaction->externalChange)) {
            for (const Change &change : unsaved)
                apply(change);
        }
        return transaction;
    }

    /// The transaction has ended when this returns.
    void commit(Transaction transaction, Change change) {
        const Transaction held = std::move(transaction);
        apply(change);
        unsaved.push_back(std::move(change));
        if (save())
            unsaved.clear();
    }

    /// Replaces the contents in memory, and leaves the file alone.
    void fill(T contents) {
        current = std::move(contents);
        ++revisionNumber;
    }

    /// Forgets the contents and removes the file.
    void clear() {
        fill({});
        unsaved.clear();
        if (file)
            file->remove();
    }

  private:
    /// False when there is nothing to read: the contents are then as they were.
    bool load() {
        if (!file->load([this](std::string_view text) { fill(codec.decode(text)); }))
            return false;
        if (codec.prune && codec.prune(current))
            save();
        return true;
    }

    /// Whether the contents were replaced by another process's.
    bool takeOver(ExternalChange change) {
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
    /// What no file holds yet, since saving failed.
    std::vector<Change> unsaved;
};

} // namespace ellwynd
