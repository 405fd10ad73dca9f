#include "platform/ProcessMemory.h"

namespace kelvo {

// The allocator of the system returns large blocks by itself.
void keepProcessMemorySmall() { }

} // namespace kelvo
