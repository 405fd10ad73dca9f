#include "platform/ProcessMemory.h"

#include <malloc/malloc.h>
#include <sys/resource.h>

namespace kelvo {

// The allocator of the system returns large blocks by itself.
void keepProcessMemorySmall() { }

// The system takes back the pages of code by itself, and does not count them as the program's.
void returnUnusedMemory(std::span<const std::string_view>)
{
    malloc_zone_pressure_relief(nullptr, 0);
}

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
