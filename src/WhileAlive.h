#pragma once

#include <QPointer>

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

namespace kelvo {

/// Wraps `function` so that it is called only while `object` exists. After that, a call does nothing and returns a
/// default-constructed result.
///
/// Use it for continuations of a QFuture that may outlive the object: `future.then(whileAlive(this, …))`. Qt's own
/// `future.then(object, …)` asserts in Qt 6.4 that the object still exists when the future finishes.
template<typename Function>
auto whileAlive(QObject *object, Function function)
{
    return [guard = QPointer<QObject>(object), function = std::move(function)]<typename... Arguments>(
               Arguments &&...arguments) mutable -> std::invoke_result_t<Function &, Arguments...>
               requires std::invocable<Function &, Arguments...>
    {
        if (!guard) {
            return std::invoke_result_t<Function &, Arguments...>();
        }
        return std::invoke(function, std::forward<Arguments>(arguments)...);
    };
}

} // namespace kelvo
