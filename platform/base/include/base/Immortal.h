/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Objects of static lifetime that are never destroyed
 */
#pragma once

namespace base {

/// Holds a value whose destructor never runs, in its own place: it leaves nothing but what the value owns. At the end
/// of a process the static objects of all libraries are destroyed in an order that nobody knows, while threads may
/// still be in calls: using or unloading what is gone then is an access to freed memory.
template <class Value>
class Immortal {
public:
    Immortal() : m_value() {}
    ~Immortal() {}
    Immortal(const Immortal&) = delete;
    Immortal& operator=(const Immortal&) = delete;

    Value& Get() noexcept { return m_value; }

private:
    union {
        Value m_value;
    };
};

}  // namespace base
