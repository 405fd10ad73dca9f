#pragma once

namespace kelvo {

/// Has memory that this process frees go back to the system rather than be kept for later: for a program that works for
/// an instant and then rests for minutes. Call it first of all, before there are threads.
void keepProcessMemorySmall();

} // namespace kelvo
