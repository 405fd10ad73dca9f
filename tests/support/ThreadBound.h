#pragma once

#include <QMetaMethod>
#include <QThread>

#include <atomic>

namespace kelvo {

/// A QObject that counts how often another thread uses it after it has removed all connections to a receiver. Nothing keeps
/// the object from being destroyed then.
template<typename Base>
class ThreadBound : public Base
{
public:
    using Base::Base;

    int touched() const { return touched_; }

protected:
    void disconnectNotify(const QMetaMethod &signal) override
    {
        // For one signal of a receiver that is destroyed, Qt calls this before it removes the connection, and holds a lock
        // that the destructor takes, too.
        const bool isAll = !signal.isValid();
        if (isAll && QThread::currentThread() != this->thread()) {
            ++touched_;
        }
    }

private:
    std::atomic<int> touched_ = 0;
};

} // namespace kelvo
