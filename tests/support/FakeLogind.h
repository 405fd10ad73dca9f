#pragma once

#include "support/PrivateBus.h"

#include <QObject>

namespace kelvo {

/// A fake login manager on a private bus.
class FakeLogind : public QObject
{
    Q_OBJECT

public:
    explicit FakeLogind(const PrivateBus &bus);

    void prepareForSleep(bool start);

private:
    BusService service_;
};

} // namespace kelvo
