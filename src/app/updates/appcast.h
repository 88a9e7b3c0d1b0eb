// The feed of updates: RSS whose items carry a build and a version in the appcast's own namespace.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ellwynd {

/// An update that somebody offers.
struct Update {
    /// Numbers joined by points; what updates are compared by.
    std::string build;
    /// As it is shown.
    std::string version;

    bool operator==(const Update &) const = default;
};

/// A check for updates that failed. The message is one sentence, for the teacher.
class UpdateError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Whether a build is newer than another: component by component as numbers of any length, where a
/// component that is not there counts as 0. Never when one of the two is not made of numbers.
[[nodiscard]] bool isNewerBuild(std::string_view build, std::string_view than);

/// The item with the highest build; absent when the feed has none. An item's build and version
/// stand in elements of its own or in attributes of its enclosure. Items of a channel that has to
/// be asked for, and items whose build is not made of numbers, are left out.
/// @throws UpdateError for a text that is not well-formed, is no RSS, or declares a document type:
/// no entity is ever expanded.
[[nodiscard]] std::optional<Update> newestUpdate(std::string_view feed);

} // namespace ellwynd
