#include "platform/ProcessMemory.h"

#include <sys/resource.h>

namespace kelvo {

// The allocator of the system returns large blocks by itself.
void keepProcessMemorySmall() { }

// The reports of the system's own crash reporter contain no heap.
void keepProcessMemoryPrivate()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) == 0) {
        limit.rlim_cur = 0;
        ::setrlimit(RLIMIT_CORE, &limit);
    }
}

} // namespace kelvo
