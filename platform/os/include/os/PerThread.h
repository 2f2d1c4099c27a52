/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of each thread's own
 */
#pragma once

namespace os {

#ifdef _WIN32

/// One value of each thread, destroyed when the thread ends or the slot goes. Thread-safe.
class ThreadSlot {
public:
    explicit ThreadSlot(void (*destroy)(void*)) noexcept;
    ~ThreadSlot();
    ThreadSlot(const ThreadSlot&) = delete;
    ThreadSlot& operator=(const ThreadSlot&) = delete;

    void* Get() const noexcept;
    void Set(void* value) noexcept;

private:
    unsigned long m_index;
};

/// The calling thread's T, made at its first use. The compiler's own thread_local would destroy it with a lock held
/// that the end of another thread wants while it holds the loader's, which the destruction wants as well.
template <class T>
T& PerThread() {
    static ThreadSlot slot([](void* value) { delete static_cast<T*>(value); });
    auto* value = static_cast<T*>(slot.Get());
    if (value == nullptr)
        slot.Set(value = new T);
    return *value;
}

#else

/// The calling thread's T, made at its first use.
template <class T>
T& PerThread() {
    thread_local T value;
    return value;
}

#endif

}  // namespace os
