// How the C library's heap uses the system's memory.
#pragma once

namespace ellwynd {

/// Returns each freed block of half a megabyte or more to the system. By default the C library
/// begins to keep such blocks after the first is freed, so that a process stays as large as its
/// largest file, once for each thread. Also merges small freed blocks with their neighbors at once.
/// Called once at the start of a process, before other threads.
void returnLargeBlocks();

/// Returns the free memory between the smaller blocks of all threads to the system. Takes some
/// milliseconds for a hundred megabytes.
void returnFreeMemory();

} // namespace ellwynd
