#pragma once

#include "http/HttpRoute.h"

#include <QFuture>
#include <QHash>
#include <QObject>
#include <QPromise>

#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace kelvo {

/// Looks up routes on other threads. Each lookup has its own thread, which ends with the lookup. There is at most one
/// lookup per origin at a time.
class RouteFinder : public QObject
{
    Q_OBJECT

public:
    explicit RouteFinder(RouteLookup lookup);
    /// Does not wait for running lookups. Their futures are cancelled.
    ~RouteFinder() override;

    /// Gives the result of a lookup that begins now, or when the running lookup for the same origin has ended. Gives
    /// nullopt when no thread can be started. Cancelling the future withdraws the request.
    QFuture<std::optional<HttpRoute>> find(const QUrl &origin);

    /// Whether there has ever been a lookup. Its thread may outlive the finder, and it may have run a proxy script (PAC),
    /// whose interpreter has threads that go on and crash when the system's proxy library unloads it at the end of the
    /// process. The system does not tell where a route comes from. Such a process must exit with std::_Exit().
    static bool mayHaveLeftThreadsBehind();

private:
    using Question = QPromise<std::optional<HttpRoute>>;
    struct Lookup
    {
        std::thread thread;
        std::vector<Question> asking;
        std::vector<Question> waiting; ///< for the next lookup
    };
    struct Mailbox;

    void begin(const QUrl &origin, Lookup &lookup);
    void end(const QUrl &origin, const std::optional<HttpRoute> &route);

    RouteLookup lookUp_;
    std::shared_ptr<Mailbox> mailbox_;
    std::map<QUrl, Lookup> lookups_;
};

} // namespace kelvo
