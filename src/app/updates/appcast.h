// Parses the update feed: RSS whose items have a build and a version in the appcast's namespace.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ellwynd {

/// An update offered by a feed.
struct Update {
    /// Numbers separated by points, by which updates are compared.
    std::string build;
    /// For display.
    std::string version;

    bool operator==(const Update &) const = default;
};

/// A failed check for updates. The message is one sentence for the teacher.
class UpdateError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Whether a build is newer than another. Components are compared as numbers of any length; a
/// missing component counts as 0. False if either build is not made of numbers.
[[nodiscard]] bool isNewerBuild(std::string_view build, std::string_view than);

/// The item with the highest build; absent if the feed has none. An item's build and version are
/// elements of the item or attributes of its enclosure. Items of an opt-in channel, and items whose
/// build is not made of numbers, are ignored.
/// @throws UpdateError if the text is not well-formed, is not RSS, or declares a document type.
///         Custom entities are never expanded.
[[nodiscard]] std::optional<Update> newestUpdate(std::string_view feed);

} // namespace ellwynd
