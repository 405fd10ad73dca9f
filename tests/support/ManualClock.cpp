#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QEvent>

namespace kelvo {

class ManualClock::Pending : public ContinuousClock::Timer
{
public:
    Pending(ManualClock &clock, Key key)
        : clock_(clock)
        , key_(key)
    {
    }
    ~Pending() override { clock_.pending_.erase(key_); }

private:
    ManualClock &clock_;
    Key key_;
};

ManualClock::ManualClock()
    : start_(std::chrono::sys_days{std::chrono::January / 5 / 2026} + std::chrono::hours{9})
{
}

std::unique_ptr<ContinuousClock::Timer> ManualClock::after(std::chrono::milliseconds wait,
                                                           std::function<void()> callback)
{
    const Key key{elapsed_ + wait, ++serial_};
    pending_.emplace(key, std::move(callback));
    return std::make_unique<Pending>(*this, key);
}

void ManualClock::advance(std::chrono::milliseconds duration)
{
    settle();
    const auto end = elapsed_ + duration;
    while (!pending_.empty() && pending_.begin()->first.due <= end) {
        const auto first = pending_.begin();
        elapsed_ = std::max(elapsed_, first->first.due);
        const auto callback = std::move(first->second);
        pending_.erase(first);
        ++fired_;
        callback();
        settle();
    }
    elapsed_ = end;
}

void settle()
{
    // The longest chain of continuations in the program needs fewer passes.
    for (int pass = 0; pass < 8; ++pass) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace kelvo
