#include "platform/ProcessMemory.h"

#include <algorithm>
#include <cstdint>

#include <fcntl.h>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kelvo {

namespace {

bool isOneOf(std::string_view path, std::span<const std::string_view> libraries)
{
    const auto name = path.substr(path.rfind('/') + 1);
    return std::any_of(libraries.begin(), libraries.end(),
                       [name](std::string_view prefix) { return name.starts_with(prefix); });
}

std::span<const ElfW(Phdr)> segments(const dl_phdr_info &library)
{
    return {library.dlpi_phdr, library.dlpi_phnum};
}

/// Whether the dynamic linker has written into the code of the library. Its pages are then not those of the file.
bool hasRelocatedCode(const dl_phdr_info &library)
{
    for (const auto &header : segments(library)) {
        if (header.p_type != PT_DYNAMIC) {
            continue;
        }
        const auto *entry = reinterpret_cast<const ElfW(Dyn) *>(library.dlpi_addr + header.p_vaddr);
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
                return true;
            }
        }
    }
    return false;
}

/// Gives up the whole pages of the segments that are never written.
void giveUpCode(const dl_phdr_info &library)
{
    const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (const auto &header : segments(library)) {
        if (header.p_type != PT_LOAD || (header.p_flags & PF_W) != 0) {
            continue;
        }
        const auto start = library.dlpi_addr + header.p_vaddr;
        const auto first = (start + pageSize - 1) / pageSize * pageSize;
        const auto last = (start + header.p_filesz) / pageSize * pageSize;
        if (first < last) {
            ::madvise(reinterpret_cast<void *>(first), last - first, MADV_DONTNEED);
        }
    }
}

int visit(dl_phdr_info *library, std::size_t, void *libraries)
{
    if (isOneOf(library->dlpi_name, *static_cast<std::span<const std::string_view> *>(libraries))
        && !hasRelocatedCode(*library)) {
        giveUpCode(*library);
    }
    return 0;
}

} // namespace

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

void returnUnusedMemory(std::span<const std::string_view> libraries)
{
#ifdef M_TRIM_THRESHOLD
    malloc_trim(0);
#endif
    ::dl_iterate_phdr(visit, &libraries);
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
