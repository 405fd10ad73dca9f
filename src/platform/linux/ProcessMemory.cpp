#include "platform/ProcessMemory.h"

#include <malloc.h>

namespace kelvo {

void keepProcessMemorySmall()
{
#ifdef M_MMAP_THRESHOLD
    // Status documents are large and short-lived. When the first of them is freed, glibc raises its mmap threshold by
    // itself, and from then on it keeps such blocks in the heaps of the threads. Fixed thresholds disable that.
    // The network layer's short-lived buffers of 64 KiB and more stay below them: returning each of them costs page faults.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 256 * 1024);
    mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace kelvo
