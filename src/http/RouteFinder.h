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

/// Looks routes up off the thread that asks, one lookup at a time for each origin. A lookup has a thread of its own, which
/// ends with it.
class RouteFinder : public QObject
{
    Q_OBJECT

public:
    explicit RouteFinder(RouteLookup lookup);
    /// Lets go of the lookups that are under way; their futures are cancelled.
    ~RouteFinder() override;

    /// The answer of a lookup that begins now, or as soon as the one that is under way for that origin has ended. Nothing
    /// when no thread can be had. Cancelling the future takes the question back.
    QFuture<std::optional<HttpRoute>> find(const QUrl &origin);

    /// Whether a lookup has ever outlived its finder. Its thread may still be in the system's libraries, which do not stand
    /// being torn down meanwhile: such a process ends with std::_Exit().
    static bool hasLeftThreadsBehind();

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
