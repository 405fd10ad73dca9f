#pragma once

#include <QFuture>
#include <QPromise>

#include <type_traits>
#include <utility>

namespace kelvo {

/// Returns a finished future.
inline QFuture<void> readyFuture()
{
    QPromise<void> promise;
    promise.start();
    promise.finish();
    return promise.future();
}

/// Returns a finished future with the result `value`.
///
/// It replaces QtFuture::makeReadyFuture, which newer versions of Qt deprecate. Its successors do not exist in Qt 6.4.
template<typename Value>
QFuture<std::decay_t<Value>> readyFuture(Value &&value)
{
    QPromise<std::decay_t<Value>> promise;
    promise.start();
    promise.addResult(std::forward<Value>(value));
    promise.finish();
    return promise.future();
}

} // namespace kelvo
