// An ApplicationService for tests: this process is the only one.
#pragma once

#include "platform/session/applicationservice.h"

namespace ellwynd::test {

class LoneService final : public ApplicationService {
  public:
    Outcome start(const QStringList &, const QString &) override { return Outcome::first; }
    void releaseName() override {}
    void reclaimName() override {}
};

} // namespace ellwynd::test
