#include "platform/ProcessMemory.h"

namespace kelvo {

// The system's allocator gives large blocks back by itself.
void keepProcessMemorySmall() { }

} // namespace kelvo
