#pragma once

namespace kelvo {

/// Asks the system, while this object exists, not to slow the process down because it has no window: timers and network
/// requests keep their pace. Has an effect on macOS only.
class WorkActivity
{
public:
    WorkActivity();
    ~WorkActivity();
    WorkActivity(const WorkActivity &) = delete;
    WorkActivity &operator=(const WorkActivity &) = delete;

private:
    [[maybe_unused]] void *activity_ = nullptr;
};

} // namespace kelvo
