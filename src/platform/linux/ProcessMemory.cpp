#include "platform/ProcessMemory.h"

#include <malloc.h>

namespace kelvo {

void keepProcessMemorySmall()
{
#ifdef M_MMAP_THRESHOLD
    // Status documents are large and short-lived. When the first of them is freed, glibc raises its mmap threshold by
    // itself, and from then on it keeps such blocks in the heaps of the threads. Fixed thresholds disable that.
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    mallopt(M_TRIM_THRESHOLD, 64 * 1024);
    mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace kelvo
