#pragma once

#include <QNetworkAccessManager>

#include <memory>

namespace kelvo {

/// What the requests of one round share, and nothing of it outlives them: the network layer with its connections and its
/// thread. Destroying it closes the connections. Every reply must be gone by then.
class HttpRound
{
public:
    explicit HttpRound(std::unique_ptr<QNetworkAccessManager> manager)
        : manager_(std::move(manager))
    {
    }

    QNetworkAccessManager &manager() { return *manager_; }

private:
    std::unique_ptr<QNetworkAccessManager> manager_;
};

} // namespace kelvo
