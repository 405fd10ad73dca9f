#pragma once

#include <span>
#include <string_view>

namespace kelvo {

/// Configures the allocator to return freed memory to the system instead of keeping it for reuse. This suits a program
/// that works for a moment and then sleeps for minutes. Call it before the first thread is started.
void keepProcessMemorySmall();

/// Returns memory to the system that is not needed for now: what the allocator has free, and the code of the loaded
/// libraries whose file names begin with one of `libraries`. When that code runs again, the system reads it again, usually
/// from its cache. This takes a few milliseconds.
void returnUnusedMemory(std::span<const std::string_view> libraries);

/// Keeps the memory of the process, which holds the user's secrets, out of core files. Call it before secrets are read.
void keepProcessMemoryPrivate();

} // namespace kelvo
