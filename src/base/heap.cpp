#include "base/heap.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ellwynd {

void returnLargeBlocks() {
#ifdef __GLIBC__
    constexpr int megabyte = 1024 * 1024;
    ::mallopt(M_MMAP_THRESHOLD, megabyte);
    // The usual 128 KB would be returned and asked for again with each page of records.
    ::mallopt(M_TRIM_THRESHOLD, 4 * megabyte);
#endif
}

void returnFreeMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace ellwynd
