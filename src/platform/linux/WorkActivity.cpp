#include "platform/WorkActivity.h"

namespace kelvo {

WorkActivity::WorkActivity() = default;

WorkActivity::~WorkActivity() = default;

} // namespace kelvo
