#pragma once

#include "support/PrivateBus.h"

#include <QObject>

namespace kelvo {

/// The login manager on a bus of the test's.
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
