#pragma once

#include "platform/SingleInstance.h"

#include <memory>

namespace kelvo {

/// One instance of the bundle in a login session. Starting the bundle again reopens the running one by the system's own
/// doing; this adds the starts that go round it, such as the executable's own.
class RunningApplicationInstance : public SingleInstance
{
    Q_OBJECT

public:
    RunningApplicationInstance();
    ~RunningApplicationInstance() override;

    bool acquire() override;

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
