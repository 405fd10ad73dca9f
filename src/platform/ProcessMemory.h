#pragma once

namespace kelvo {

/// Configures the allocator to return freed memory to the system instead of keeping it for reuse. This suits a program
/// that works for a moment and then sleeps for minutes. Call it before the first thread is started.
void keepProcessMemorySmall();

/// Keeps the memory of the process, which holds the user's secrets, out of core files. Call it before secrets are read.
void keepProcessMemoryPrivate();

} // namespace kelvo
