#pragma once

#include <QFuture>
#include <QPromise>

#include <type_traits>
#include <utility>

namespace kelvo {

/// A future that is already finished.
inline QFuture<void> readyFuture()
{
    QPromise<void> promise;
    promise.start();
    promise.finish();
    return promise.future();
}

/// A future that is already finished with `value`.
///
/// QtFuture::makeReadyFuture says the same in Qt 6.4 and is deprecated later; what replaces it is not in Qt 6.4.
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
