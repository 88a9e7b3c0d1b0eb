#include "base/endprocess.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace ellwynd {

void endProcess(int status) {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
#ifdef __SANITIZE_ADDRESS__
    // Otherwise done by an exit handler.
    __lsan_do_leak_check();
#endif
    std::quick_exit(status);
}

} // namespace ellwynd
