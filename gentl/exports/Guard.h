/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What every exported function passes through
 */
#pragma once

#include <utility>

#include "gentl/GenTL.h"
#include "modules/Library.h"
#include "support/Info.h"
#include "support/Memory.h"

namespace gentl {

/// The code of the exception that is being handled, which becomes the thread's last error.
GC_ERROR StoreCurrentException() noexcept;

/// Runs \a action; what it throws becomes a code and the thread's last error. Nothing gets past it.
template <class Action>
GC_ERROR Plain(Action&& action) noexcept {
    try {
        std::forward<Action>(action)();
        return GC_ERR_SUCCESS;
    } catch (...) {
        return StoreCurrentException();
    }
}

/// The same with the library, which stands until the call is over.
template <class Action>
GC_ERROR Guarded(Action&& action) noexcept {
    return Plain([&] {
        const std::shared_ptr<Library> library = Library::Get();
        std::forward<Action>(action)(*library);
    });
}

/// The same with the object of a handle.
template <class T, class Action>
GC_ERROR With(void* handle, Action&& action) noexcept {
    return Guarded([&](Library& library) {
        const std::shared_ptr<T> object = library.Handles().Get<T>(handle);
        std::forward<Action>(action)(*object);
    });
}

/// The same for an information command.
template <class T, class Reader>
GC_ERROR Ask(void* handle, INFO_DATATYPE* type, void* buffer, size_t* size, Reader&& read) noexcept {
    return With<T>(handle, [&](T& object) {
        const InfoTarget target{type, buffer, size};
        CheckTarget(target);
        WriteInfo(std::forward<Reader>(read)(object), target);
    });
}

/// A text of the consumer's.
std::string TextArgument(const char* text, const char* name);

}  // namespace gentl
