#include "base/heap.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ellwynd {

void returnLargeBlocks() {
#ifdef __GLIBC__
    constexpr int threshold = 1024 * 1024;
    ::mallopt(M_MMAP_THRESHOLD, threshold);
#endif
}

} // namespace ellwynd
