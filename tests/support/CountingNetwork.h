#pragma once

#include "http/HttpNetwork.h"
#include "simulator/ReroutedNetwork.h"

namespace kelvo {

/// A network to the simulated internet that counts the requests when they are started, before they arrive. A test can
/// check at once that no request was sent.
class CountingNetwork : public ReroutedNetwork
{
public:
    /// Makes the HttpNetwork for a session. `begun` counts the requests and must outlive the session.
    static HttpNetwork network(const SimulatedInternet &internet, int &begun)
    {
        return {[&] { return std::make_unique<CountingNetwork>(internet, begun); }};
    }

    CountingNetwork(const SimulatedInternet &internet, int &begun)
        : ReroutedNetwork(internet)
        , begun_(begun)
    {
    }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request, QIODevice *outgoing) override
    {
        ++begun_;
        return ReroutedNetwork::createRequest(operation, request, outgoing);
    }

private:
    int &begun_;
};

} // namespace kelvo
