/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory of a node map: given out in pieces, given back as a whole
 */
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace GenApi {

/// Gives out memory that lives as long as the arena. Objects made in it are never destroyed, so they may own nothing.
class Arena {
public:
    void* Allocate(std::size_t size, std::size_t alignment);

    template <class T, class... Arguments>
    T* New(Arguments&&... arguments) {
        return new (Allocate(sizeof(T), alignof(T))) T(std::forward<Arguments>(arguments)...);
    }

    template <class T>
    std::span<T> Copy(const std::vector<T>& values) {
        if (values.empty())
            return {};
        T* copy = static_cast<T*>(Allocate(values.size() * sizeof(T), alignof(T)));
        std::uninitialized_copy(values.begin(), values.end(), copy);
        return {copy, values.size()};
    }

private:
    std::vector<std::unique_ptr<std::byte[]>> m_chunks;
    std::byte* m_next = nullptr;
    std::size_t m_left = 0;
    std::size_t m_chunkSize = 4096;
};

}  // namespace GenApi
