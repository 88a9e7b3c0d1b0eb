// The states of submissions.
#pragma once

#include <cstdint>
#include <string_view>

namespace ellwynd {

/// The state of a submission in Canvas, as a small value. Canvas may have more states than those
/// known here; their names are kept. May be used on any thread.
class WorkflowState {
  public:
    /// A state without a name.
    constexpr WorkflowState() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): it is the name.
    WorkflowState(std::string_view name);
    // NOLINTNEXTLINE(google-explicit-constructor)
    WorkflowState(const char *name) : WorkflowState(std::string_view(name)) {}

    // States with a meaning for scores.
    static const WorkflowState unsubmitted;
    static const WorkflowState submitted;
    static const WorkflowState graded;
    static const WorkflowState pendingReview;

    /// As Canvas has it: "pending_review".
    [[nodiscard]] std::string_view name() const;

    bool operator==(const WorkflowState &) const = default;

  private:
    constexpr explicit WorkflowState(std::uint16_t number) : number(number) {}

    /// Positions in the table of names.
    std::uint16_t number = 0;
};

inline constexpr WorkflowState WorkflowState::unsubmitted{std::uint16_t{1}};
inline constexpr WorkflowState WorkflowState::submitted{std::uint16_t{2}};
inline constexpr WorkflowState WorkflowState::graded{std::uint16_t{3}};
inline constexpr WorkflowState WorkflowState::pendingReview{std::uint16_t{4}};

} // namespace ellwynd
