/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A growing array of plain values
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

namespace GenApi {

/// Grows where it lies when the system can do that: large arrays are hardly ever copied, nor there twice meanwhile.
template <class T>
class PlainArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    std::size_t size() const noexcept { return m_size; }
    T* data() noexcept { return m_values.get(); }
    const T* data() const noexcept { return m_values.get(); }
    T& operator[](std::size_t index) noexcept { return m_values.get()[index]; }
    const T& operator[](std::size_t index) const noexcept { return m_values.get()[index]; }
    std::span<const T> All() const noexcept { return {data(), m_size}; }

    /// \param[in] value Not of this array
    void push_back(const T& value) {
        if (m_size == m_capacity)
            Grow(m_size + 1);
        m_values.get()[m_size++] = value;
    }
    /// \param[in] values Not of this array
    void Append(const T* values, std::size_t count) {
        if (count > m_capacity - m_size)
            Grow(m_size + count);
        if (count != 0)
            Copy(reinterpret_cast<char*>(m_values.get() + m_size), reinterpret_cast<const char*>(values),
                 count * sizeof(T));
        m_size += count;
    }
    void resize(std::size_t size) noexcept { m_size = size < m_size ? size : m_size; }
    void Reserve(std::size_t capacity) {
        if (capacity > m_capacity)
            Allocate(capacity);
    }
    /// Gives back what is not used.
    void Shrink() {
        if (m_size < m_capacity)
            Allocate(m_size);
    }

private:
    struct Free {
        void operator()(T* values) const noexcept { std::free(values); }
    };

    // Most texts are short: no function is called for those. Two words cover the text, and share some of it.
    static void Copy(char* to, const char* from, std::size_t count) noexcept {
        const auto copy = [&]<class Word>(Word word) {
            Word last = word;
            std::memcpy(&word, from, sizeof(word));
            std::memcpy(&last, from + count - sizeof(last), sizeof(last));
            std::memcpy(to, &word, sizeof(word));
            std::memcpy(to + count - sizeof(last), &last, sizeof(last));
        };
        if (count > 16)
            std::memcpy(to, from, count);
        else if (count >= 8)
            copy(std::uint64_t{});
        else if (count >= 4)
            copy(std::uint32_t{});
        else if (count >= 2)
            copy(std::uint16_t{});
        else
            *to = *from;
    }
    void Grow(std::size_t least) {
        const std::size_t wanted = m_capacity + m_capacity / 2 + 16;
        Allocate(wanted > least ? wanted : least);
    }
    void Allocate(std::size_t capacity) {
        if (capacity > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T))
            throw std::bad_alloc();
        void* const values = std::realloc(m_values.get(), (capacity != 0 ? capacity : 1) * sizeof(T));
        if (values == nullptr)
            throw std::bad_alloc();
        static_cast<void>(m_values.release());
        m_values.reset(static_cast<T*>(values));
        m_capacity = capacity;
    }

    std::unique_ptr<T, Free> m_values;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

}  // namespace GenApi
