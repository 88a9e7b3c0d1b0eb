// A cloud service that keeps the folders of several computers in step, badly: late, out of order,
// in parts.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ellwynd::test {

/// The content of a file; absent for a removed one.
using FileContent = std::optional<std::string>;

/// What the service holds: every content of each file, oldest first.
using CloudServer = std::map<std::string, std::vector<FileContent>>;

enum class Delivery {
    latest,
    /// The beginning of the latest content; the rest comes later.
    torn,
    /// An older content that the computer does not have yet.
    old,
};

/// The copy of the folder on one computer.
class Replica {
  public:
    /// @param path the folder; moved to `away` and back by `setAway`.
    /// @param server must outlive this object.
    Replica(std::filesystem::path path, std::filesystem::path away, CloudServer &server);

    [[nodiscard]] const std::filesystem::path &path() const { return folder; }
    [[nodiscard]] bool isAway() const;
    /// Takes the folder away, as with a disk that is not connected, or brings it back.
    void setAway(bool away);
    /// An empty folder in the place of one that is away.
    void createMountPoint() const;

    /// Uploads a file that changed here, unless its delivery is not complete. Of two changes of one
    /// file the service keeps the one that reached it first, and leaves the other one beside it.
    void upload(const std::string &name);
    /// Delivers a file. This computer's own changes are not delivered to it.
    /// @param draw chooses the length of a part, or the older content.
    void deliver(const std::string &name, Delivery delivery, int draw = 0);
    /// Uploads what changed here, and delivers everything else whole.
    void synchronize();

  private:
    /// What this computer's file is based on.
    struct Base {
        /// The number of contents of the server that it takes into account.
        std::size_t version = 0;
        /// As the service left it.
        FileContent content;
    };

    [[nodiscard]] std::filesystem::path current() const;
    [[nodiscard]] FileContent read(const std::string &name) const;
    void write(const std::string &name, const FileContent &content) const;

    std::filesystem::path folder;
    std::filesystem::path awayFolder;
    CloudServer &server;
    std::map<std::string, Base> bases;
    /// Files whose delivery is not complete.
    std::set<std::string> incomplete;
};

} // namespace ellwynd::test
