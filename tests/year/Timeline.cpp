#include "Timeline.h"

#include <algorithm>

namespace kelvo {

class Timeline::Pending : public ContinuousClock::Timer
{
public:
    Pending(Timeline &timeline, Key key)
        : timeline_(timeline)
        , key_(key)
    {
    }
    ~Pending() override
    {
        timeline_.pending_.erase(key_);
        timeline_.programTimers_.erase(key_);
    }

private:
    Timeline &timeline_;
    Key key_;
};

std::unique_ptr<ContinuousClock::Timer> Timeline::after(std::chrono::milliseconds wait, std::function<void()> callback)
{
    const Key key{now_ + wait, ++serial_};
    pending_.emplace(key, Entry{std::move(callback), true});
    programTimers_.insert(key);
    return std::make_unique<Pending>(*this, key);
}

void Timeline::at(Instant due, std::function<void()> event)
{
    pending_.emplace(Key{due, ++serial_}, Entry{std::move(event), false});
}

Timeline::Ran Timeline::runNext(Instant end)
{
    if (pending_.empty() || pending_.begin()->first.due >= end) {
        return Ran::nothing;
    }
    auto next = pending_.extract(pending_.begin());
    programTimers_.erase(next.key());
    now_ = std::max(now_, next.key().due);
    next.mapped().run();
    return next.mapped().isOfProgram ? Ran::programTimer : Ran::worldEvent;
}

std::vector<Timeline::Instant> Timeline::programTimers() const
{
    std::vector<Instant> instants;
    for (const auto &key : programTimers_) {
        instants.push_back(key.due);
    }
    return instants;
}

} // namespace kelvo
