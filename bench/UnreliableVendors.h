#pragma once

#include "simulator/SimulatedInternet.h"

#include <QRandomGenerator>

namespace kelvo {

/// Vendors with frequent outages and faults: error pages, broken connections, silence, documents that are wrong, pages that
/// report a service operational while it does not answer.
class UnreliableVendors
{
public:
    /// Everything is operational at first.
    UnreliableVendors(SimulatedInternet &internet, quint32 seed);

    /// Chooses the state of every vendor for one round, at random. Many keep the state they have.
    void change();
    /// Ends all outages and faults.
    void recover();
    /// Ends all faults, and begins an outage at every vendor.
    void breakDown();
    /// Makes every vendor accept requests and answer none.
    void fallSilent();

    /// The number of status requests that arrive in a round now. Others meet a host that is not there.
    int requestsOfARound() const;
    /// The number of services that are affected after `breakDown`.
    static int servicesInTrouble();
    /// Whether some vendor leaves a request without an answer now.
    bool isSomeoneSilent() const { return isSomeoneSilent_; }

private:
    struct Source;
    static const QList<Source> sources;

    /// Returns true once in `times`.
    bool chance(int times) { return random_.bounded(times) == 0; }
    SimulatedResponse fault();
    void setTrouble(const Source &source, bool isInTrouble);

    SimulatedInternet &internet_;
    QRandomGenerator random_;
    int missingRequests_ = 0;
    bool isSomeoneSilent_ = false;
};

} // namespace kelvo
