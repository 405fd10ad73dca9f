#pragma once

#include <QObject>

namespace kelvo {

/// Reports when the machine comes online or changes its network. When the system cannot report this, no signal is
/// emitted.
class NetworkWatch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// A default route, its interface, an address of that interface or a name server appeared or changed. Not emitted
    /// when one is lost.
    /// May be emitted several times while a network comes up.
    void changed();
};

} // namespace kelvo
