// Widget snapshots for tests.
#pragma once

#include "outputs/snapshot/widgetsnapshot.h"
#include "support/instants.h"

namespace ellwynd::test {

/// Two terms: 20 is the automatic one, with a course at every level and one that is OK.
inline WidgetSnapshotFile twoTerms() {
    return {
        .updatedAt = noon,
        .automaticTermID = 20,
        .terms = {
            {.id = 20,
             .title = "Fall 2026",
             .courses =
                 {{.id = 4021, .name = "Bio", .atRisk = 4, .concern = 2, .watch = 1, .total = 26},
                  {.id = 4022, .name = "Chem", .total = 24}}},
            {.id = 10,
             .title = "Summer 2026",
             .courses = {{.id = 3310, .name = "Physics", .watch = 1, .total = 12}}}}};
}

} // namespace ellwynd::test
