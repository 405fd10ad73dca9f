#include "platform/ProcessMemory.h"

#include <malloc.h>

namespace kelvo {

void keepProcessMemorySmall()
{
#ifdef M_MMAP_THRESHOLD
    // The status documents are large and short-lived. The GNU C library raises this threshold by itself as soon as one
    // of them is freed, and from then on keeps such blocks, in pieces, in the heap of each thread.
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    mallopt(M_TRIM_THRESHOLD, 64 * 1024);
    mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace kelvo
