/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Objects of static lifetime that are never destroyed
 */
#pragma once

namespace CLProtocol {

/// Holds a value whose destructor never runs. At the end of a process foreign libraries destroy their own statics in
/// an order that nobody knows: calling or unloading them then is an access to what is gone.
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

}  // namespace CLProtocol
