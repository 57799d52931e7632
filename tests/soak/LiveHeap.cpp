// SPDX-License-Identifier: MIT
#include "tests/soak/LiveHeap.h"

#if defined(__SANITIZE_ADDRESS__)
// Of the sanitizers' interface, without a header in Debian 12's compiler.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

std::size_t liveHeap()
{
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 usage = mallinfo2();
    return usage.uordblks + usage.hblkhd;
#endif
}
