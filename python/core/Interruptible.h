/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls into the library that may wait, made so that Ctrl-C ends them
 */
#pragma once

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "Gil.h"
#include "Helper.h"

namespace python {

/// Runs something of the library by a helper of the main thread, which this is, without the GIL.
template <class Action>
auto ByHelper(Action action) -> decltype(action()) {
    using Result = decltype(action());
    if constexpr (std::is_void_v<Result>) {
        Helper::Do(std::move(action));
    } else {
        const auto result = std::make_shared<std::optional<Result>>();
        Helper::Do([result, action = std::move(action)] { result->emplace(action()); });
        return std::move(**result);
    }
}

/**
 * \brief Run something of the library that may wait, without the GIL
 * \param[in] action It must own all that it uses, as it may be left
 *
 * On the main thread a signal handler that throws ends the wait for it; what it gives later is destroyed. Other threads
 * run it themselves, as signals are none of their business.
 */
template <class Action>
auto Interruptible(Action action) -> decltype(action()) {
    const ReleasedGil released;
    auto own = std::move(action);  // which goes before the GIL is taken again: it may hold a camera
    return IsMainThread() ? ByHelper(std::move(own)) : own();
}

/// Binds an operation that may wait of something that is a handle, which is copied.
template <class Class, class Result>
auto Waiting(Result (Class::*operation)() const) {
    return [operation](const Class& self) { return Interruptible([operation, self] { return (self.*operation)(); }); };
}

/// The same of something that Python shares with the calls it left.
template <class Class, class Result>
auto WaitingShared(Result (Class::*operation)() const) {
    return [operation](const std::shared_ptr<Class>& self) {
        return Interruptible([operation, self] { return ((*self).*operation)(); });
    };
}
template <class Class>
auto WaitingShared(void (Class::*operation)()) {
    return [operation](const std::shared_ptr<Class>& self) {
        Interruptible([operation, self] { ((*self).*operation)(); });
    };
}

}  // namespace python
