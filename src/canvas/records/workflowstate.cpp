#include "canvas/records/workflowstate.h"

#include <algorithm>
#include <array>
#include <deque>
#include <mutex>
#include <string>

namespace ellwynd {

namespace {

constexpr std::array<std::string_view, 5> knownNames{
    "", "unsubmitted", "submitted", "graded", "pending_review"};

/// More names than Canvas ever has; what comes after them is one state without a name.
constexpr std::size_t mostOthers = 1000;

/// The other names that were read, in the order of their first reading.
struct OtherNames {
    std::mutex mutex;
    /// A deque keeps its elements where they are.
    std::deque<std::string> names;
};

OtherNames &others() {
    static OtherNames names;
    return names;
}

std::uint16_t numberOf(std::string_view name) {
    const auto known = std::ranges::find(knownNames, name);
    if (known != knownNames.end())
        return std::uint16_t(known - knownNames.begin());
    OtherNames &other = others();
    const std::lock_guard lock(other.mutex);
    const auto at = std::size_t(std::ranges::find(other.names, name) - other.names.begin());
    if (at == mostOthers)
        return 0;
    if (at == other.names.size())
        other.names.emplace_back(name);
    return std::uint16_t(knownNames.size() + at);
}

} // namespace

WorkflowState::WorkflowState(std::string_view name) : number(numberOf(name)) {}

std::string_view WorkflowState::name() const {
    if (number < knownNames.size())
        return knownNames[number];
    OtherNames &other = others();
    const std::lock_guard lock(other.mutex);
    return other.names[number - knownNames.size()];
}

} // namespace ellwynd
