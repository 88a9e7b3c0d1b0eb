#include "risk/missedwork.h"

#include "base/text.h"

#include <algorithm>

namespace ellwynd {

std::vector<MissingPair> missingPairs(std::span<const SubmissionSummary> submissions) {
    std::vector<MissingPair> pairs;
    for (const SubmissionSummary &submission : submissions) {
        if (submission.missing.value_or(false))
            pairs.push_back({submission.assignmentID, submission.userID});
    }
    std::ranges::sort(pairs);
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
}

bool isClassWide(std::size_t missing, std::size_t rosterSize) {
    // In a smaller class, two or three students can be a majority by chance.
    constexpr std::size_t minClassSize = 5;
    constexpr double minShare = 0.6;
    return rosterSize >= minClassSize && double(missing) >= minShare * double(rosterSize);
}

std::vector<MissedAssignment> missedWork(
    std::span<const SubmissionSummary> submissions, std::size_t rosterSize,
    const AssignmentNames &names) {
    std::vector<MissedAssignment> result;
    for (const MissingPair &pair : missingPairs(submissions)) {
        if (result.empty() || result.back().id != pair.assignmentID) {
            result.push_back(
                {.id = pair.assignmentID,
                 .name = assignmentName(names, pair.assignmentID),
                 .studentIDs = {},
                 .rosterSize = std::int64_t(rosterSize),
                 .isClassWide = false});
        }
        result.back().studentIDs.push_back(pair.studentID);
    }
    for (MissedAssignment &assignment : result)
        assignment.isClassWide = isClassWide(assignment.studentIDs.size(), rosterSize);
    std::ranges::stable_sort(result, [](const MissedAssignment &a, const MissedAssignment &b) {
        if (a.studentIDs.size() != b.studentIDs.size())
            return a.studentIDs.size() > b.studentIDs.size();
        return a.name < b.name;
    });
    return result;
}

std::string missedWorkSummary(std::size_t assignments, std::int64_t rosterSize) {
    std::string line = plural(std::int64_t(assignments), "assignment") +
        " with missing work, out of " + plural(rosterSize, "student");
    if (assignments == 0)
        line += " — nobody is missing anything";
    return line;
}

std::string missedWorkDescription(const MissedAssignment &assignment) {
    return assignment.name + ", missing for " +
        plural(std::int64_t(assignment.studentIDs.size()), "student") +
        (assignment.isClassWide ? ", excluded from risk scores" : "");
}

} // namespace ellwynd
