/* SPDX-License-Identifier: Apache-2.0 */
/*
 * HandleTable: what the consumer's handles stand for
 */
#pragma once

#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <string>
#include <unordered_map>

#include "os/LockName.h"
#include "support/GenTLError.h"

namespace gentl {

/// Anything that a handle can stand for.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    void* Handle() const noexcept { return m_handle; }

private:
    friend class HandleTable;
    void* m_handle = nullptr;
};

/// Handles are numbers that are never given out twice, no addresses: a stale, foreign or wrong one is found without
/// looking at memory. An object that is in use stays until its last user is done. Thread-safe.
class HandleTable {
public:
    void* Add(const std::shared_ptr<Object>& object);
    void Remove(const Object& object) noexcept;
    void RemoveAll() noexcept;
    std::shared_ptr<Object> Find(void* handle) const noexcept;

    /// The object of a handle; throws INVALID_HANDLE where there is none, or one of another kind.
    template <class T>
    std::shared_ptr<T> Get(void* handle) const {
        if (auto object = std::dynamic_pointer_cast<T>(Find(handle)))
            return object;
        throw GenTLError(GC_ERR_INVALID_HANDLE, "The handle stands for nothing, or for something else");
    }

private:
    mutable std::shared_mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL handles"};
    std::unordered_map<std::uintptr_t, std::shared_ptr<Object>> m_objects;
    std::uintptr_t m_next = 1;
};

}  // namespace gentl
