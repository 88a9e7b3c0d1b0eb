#include "app/courses/nearbyterms.h"

#include <algorithm>

namespace ellwynd {

namespace {

using Days = std::chrono::duration<std::int64_t, std::ratio<86'400>>;

constexpr Days upcoming{60};
constexpr Days recentlyEnded{30};
constexpr Days longestWithoutEnd{120};

bool hasStarted(const Term &term, Date now) {
    return term.startAt && *term.startAt <= now;
}

bool isInSession(const Term &term, Date now) {
    if (!hasStarted(term, now))
        return false;
    return term.endAt ? *term.endAt >= now : *term.startAt >= now - longestWithoutEnd;
}

} // namespace

bool isNearby(const Term &term, Date now) {
    if (!term.startAt)
        return false;
    const bool isUpcoming = *term.startAt > now && *term.startAt <= now + upcoming;
    const bool hasEnded = term.endAt && *term.endAt < now && *term.endAt >= now - recentlyEnded;
    return isInSession(term, now) || isUpcoming || hasEnded;
}

std::vector<TermGroup> nearbyTerms(const std::vector<Course> &courses, Date now) {
    std::vector<TermGroup> groups = groupByTerm(courses);
    std::erase_if(groups, [now](const TermGroup &group) {
        return !group.term || !isNearby(*group.term, now);
    });
    return groups;
}

std::optional<Term> automaticTerm(const std::vector<Course> &courses, Date now) {
    // The groups are sorted newest first, so the first match has the latest start.
    const std::vector<TermGroup> groups = groupByTerm(courses);
    for (const auto qualifies : {isInSession, hasStarted}) {
        const auto found = std::ranges::find_if(groups, [&](const TermGroup &group) {
            return group.term && qualifies(*group.term, now);
        });
        if (found != groups.end())
            return found->term;
    }
    return std::nullopt;
}

} // namespace ellwynd
