// Lowers a limit of this process for the life of an object, so that system calls fail.
#pragma once

#include <sys/resource.h>

namespace ellwynd::test {

/// With RLIMIT_NOFILE and 0, no file can be opened; with RLIMIT_FSIZE, none can grow beyond.
class ResourceLimit {
  public:
    ResourceLimit(decltype(RLIMIT_NOFILE) resource, rlim_t soft) : resource(resource) {
        ::getrlimit(resource, &before);
        rlimit lowered = before;
        lowered.rlim_cur = soft;
        ::setrlimit(resource, &lowered);
    }
    ~ResourceLimit() { ::setrlimit(resource, &before); }
    ResourceLimit(const ResourceLimit &) = delete;
    ResourceLimit &operator=(const ResourceLimit &) = delete;

  private:
    decltype(RLIMIT_NOFILE) resource;
    rlimit before{};
};

} // namespace ellwynd::test
