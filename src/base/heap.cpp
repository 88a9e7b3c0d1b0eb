#include "base/heap.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ellwynd {

void returnLargeBlocks() {
#ifdef __GLIBC__
    constexpr int threshold = 512 * 1024;
    ::mallopt(M_MMAP_THRESHOLD, threshold);
#endif
}

void returnFreeMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace ellwynd
