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
    // Without the lists of small freed blocks, which are merged late: `malloc_trim` then adds them
    // to the end of a thread's heap, which it does not return to the system.
    ::mallopt(M_MXFAST, 0);
#endif
}

void returnFreeMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace ellwynd
