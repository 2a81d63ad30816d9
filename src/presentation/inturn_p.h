#pragma once

#include <QPointer>

#include <functional>
#include <type_traits>

namespace ts::pm {

/**
 * Calls signals and other functions of an object, and lambdas about it, one after the other. Ends early if
 * one of them, by a listener, destroys the object.
 */
template<typename Object, typename... Steps>
void inTurn(Object *object, Steps... steps)
{
    const QPointer<Object> alive(object);
    const auto take = [&alive](auto step) {
        if (!alive)
            return;
        if constexpr (std::is_invocable_v<decltype(step)>)
            step();
        else
            std::invoke(step, alive.data());
    };
    (take(steps), ...);
}

} // namespace ts::pm
