#include "platform/Compositing.h"

namespace kelvo {

bool isCompositing()
{
    return true;
}

} // namespace kelvo
