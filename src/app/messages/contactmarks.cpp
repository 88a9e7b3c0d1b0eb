#include "app/messages/contactmarks.h"

#include <map>

namespace ellwynd {

ContactChange noteContacts(ContactLog &contacts, const SharedList<RiskRow> &students, Date date) {
    std::map<std::int64_t, std::vector<std::int64_t>> byCourse;
    for (const RiskRow &row : students)
        byCourse[row.courseID].push_back(row.id);
    ContactChange all;
    for (const auto &[courseID, ids] : byCourse)
        all.append(contacts.noteContacts(courseID, ids, date));
    return all;
}

} // namespace ellwynd
