#include "http/RouteFinder.h"

#include <mutex>
#include <system_error>

namespace kelvo {
namespace {

bool hasBegunALookup = false;

template<typename Promises, typename Result>
void answer(Promises promises, const Result &result)
{
    for (auto &promise : promises) {
        promise.addResult(result);
        promise.finish();
    }
}

} // namespace

/// Receives the result of a lookup. Shared with the threads, because a lookup may outlive the finder.
struct RouteFinder::Mailbox
{
    std::mutex mutex;
    RouteFinder *finder;

    void put(const QUrl &origin, const std::optional<HttpRoute> &route)
    {
        const std::lock_guard lock(mutex);
        if (finder) {
            QMetaObject::invokeMethod(
                finder, [finder = finder, origin, route] { finder->end(origin, route); }, Qt::QueuedConnection);
        }
    }
};

RouteFinder::RouteFinder(RouteLookup lookup)
    : lookUp_(std::move(lookup))
    , mailbox_(std::make_shared<Mailbox>())
{
    mailbox_->finder = this;
}

RouteFinder::~RouteFinder()
{
    {
        const std::lock_guard lock(mailbox_->mutex);
        mailbox_->finder = nullptr;
    }
    for (auto &[origin, lookup] : lookups_) {
        lookup.thread.detach();
    }
}

bool RouteFinder::mayHaveLeftThreadsBehind()
{
    return hasBegunALookup;
}

QFuture<std::optional<HttpRoute>> RouteFinder::find(const QUrl &origin)
{
    Question question;
    question.start();
    auto future = question.future();
    auto &lookup = lookups_[origin];
    lookup.waiting.push_back(std::move(question));
    if (!lookup.thread.joinable()) {
        begin(origin, lookup);
    }
    return future;
}

void RouteFinder::begin(const QUrl &origin, Lookup &lookup)
{
    hasBegunALookup = true;
    lookup.asking = std::exchange(lookup.waiting, {});
    try {
        lookup.thread = std::thread(
            [mailbox = mailbox_, lookUp = lookUp_, origin] { mailbox->put(origin, lookUp(origin)); });
    } catch (const std::system_error &) {
        auto asking = std::move(lookup.asking);
        lookups_.erase(origin);
        answer(std::move(asking), std::optional<HttpRoute>());
    }
}

void RouteFinder::end(const QUrl &origin, const std::optional<HttpRoute> &route)
{
    auto &lookup = lookups_.at(origin);
    lookup.thread.join(); // does not block: the thread has delivered its result
    auto asking = std::move(lookup.asking);
    std::erase_if(lookup.waiting, [](const Question &question) { return question.isCanceled(); });
    if (lookup.waiting.empty()) {
        lookups_.erase(origin);
    } else {
        begin(origin, lookup);
    }
    // This is the last step and uses only local variables, because a continuation may destroy this object.
    answer(std::move(asking), route);
}

} // namespace kelvo
