#pragma once

#include <QObject>

namespace kelvo {

/// Tells when the machine comes online or changes its network.
/// Where the system cannot tell, it stays silent.
class NetworkWatch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// A way out appeared or changed: a default route, its interface, or an address of that interface. Losing one is not
    /// told. Several may come in quick succession while a network is set up.
    void changed();
};

} // namespace kelvo
