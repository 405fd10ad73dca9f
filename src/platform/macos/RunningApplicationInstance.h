#pragma once

#include "platform/SingleInstance.h"

#include <memory>

namespace kelvo {

/// One instance of the bundle per login session. When the bundle is opened again, the system sends a reopen event to the
/// running instance. This class also handles starts that bypass the system, such as running the executable directly.
class RunningApplicationInstance : public SingleInstance
{
    Q_OBJECT

public:
    RunningApplicationInstance();
    ~RunningApplicationInstance() override;

    Outcome acquire() override;

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
