#include "platform/ProcessMemory.h"

#include <algorithm>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

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

// An undumpable process (PR_SET_DUMPABLE) would have no core file either, but its /proc directory is closed to the desktop:
// the portals, which tell the colour scheme among other things, refuse every call of such a process.
void keepProcessMemoryPrivate()
{
    // With a limit of 0, the kernel writes no core file but still starts a program that collects one, such as
    // systemd-coredump. With a limit of 1 it does neither.
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) == 0) {
        limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
        ::setrlimit(RLIMIT_CORE, &limit);
    }
    // The limit can be 0 already, or be raised later from outside. Then a core file has no memory of the process in it.
    if (const int filter = ::open("/proc/self/coredump_filter", O_WRONLY | O_CLOEXEC); filter >= 0) {
        [[maybe_unused]] const auto written = ::write(filter, "0", 1);
        ::close(filter);
    }
}

} // namespace kelvo
