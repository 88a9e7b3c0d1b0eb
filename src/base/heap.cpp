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
    // Small freed blocks are otherwise collected apart. When they are joined at last, the end of a
    // thread's heap has grown by megabytes that neither `free` nor `malloc_trim` returns.
    ::mallopt(M_MXFAST, 0);
#endif
}

void returnFreeMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace ellwynd
