#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QSignalSpy>

namespace kelvo {

/// Runs the event loop until `future` is finished. Returns false after ten seconds.
template<typename T>
bool settles(const QFuture<T> &future)
{
    QFutureWatcher<T> watcher;
    QSignalSpy finished(&watcher, &QFutureWatcherBase::finished);
    watcher.setFuture(future);
    return future.isFinished() || finished.wait(10'000);
}

} // namespace kelvo
