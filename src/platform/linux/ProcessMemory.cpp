#include "platform/ProcessMemory.h"

#include <algorithm>
#include <cstdint>

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kelvo {

namespace {

bool isOneOf(std::string_view path, std::span<const std::string_view> libraries)
{
    const auto name = path.substr(path.rfind('/') + 1);
    return std::any_of(libraries.begin(), libraries.end(),
                       [name](std::string_view prefix) { return name.starts_with(prefix); });
}

/// Whether the dynamic linker has written into the code of the library. Its pages are then not those of the file.
bool hasRelocatedCode(const dl_phdr_info &library)
{
    for (int i = 0; i < library.dlpi_phnum; ++i) {
        const auto &header = library.dlpi_phdr[i];
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
    for (int i = 0; i < library.dlpi_phnum; ++i) {
        const auto &header = library.dlpi_phdr[i];
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
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    mallopt(M_TRIM_THRESHOLD, 64 * 1024);
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

} // namespace kelvo
