#pragma once

#include "http/HttpNetwork.h"
#include "simulator/ReroutedNetwork.h"

namespace kelvo {

/// The simulated internet, with a count of the requests that were begun, whether or not they ever arrive. Lets a test
/// say at once that nothing was sent.
class CountingNetwork : public ReroutedNetwork
{
public:
    /// What a session needs that is to use such networks.
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
