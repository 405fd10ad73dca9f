#pragma once

#include <QPointer>

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

namespace kelvo {

/// `function` for as long as `object` lives; after that a function that does nothing and gives an empty result.
///
/// For continuations of a QFuture that may outlive who waits for it: `future.then(object, …)` says the same, but in
/// Qt 6.4 it asserts that the object still lives when the future finishes.
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
