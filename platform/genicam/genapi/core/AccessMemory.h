/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What an access has found out up to now
 */
#pragma once

#include <cstdint>
#include <exception>
#include <unordered_map>

#include "core/Evaluation.h"

namespace GenApi {

/// Numbers the accesses to a node map, so that a node can tell whether it was asked before by the same one, and keeps
/// the errors that it met. Wants the node map's lock.
class AccessMemory {
public:
    std::uint32_t Epoch() const noexcept { return m_epoch; }
    /// Says that a node remembers something, so that it will have to be forgotten.
    void Use() noexcept { m_isUsed = true; }
    /// Forgets what was found out: another access begins, or something changed. True when epochs begin anew, so that
    /// nodes have to forget theirs.
    bool Forget() noexcept {
        if (!m_isUsed)
            return false;
        m_isUsed = false;
        if (!m_failures.empty())
            m_failures.clear();
        return ++m_epoch == 0;
    }
    void KeepFailure(std::uint32_t node, EPart part, std::exception_ptr failure);
    /// Throws the error that a part of a node had, if it had one.
    void ThrowFailure(std::uint32_t node, EPart part) const {
        if (!m_failures.empty())
            FindAndThrow(node, part);
    }

private:
    void FindAndThrow(std::uint32_t node, EPart part) const;

    std::uint32_t m_epoch = 1;
    bool m_isUsed = false;
    std::unordered_map<std::uint64_t, std::exception_ptr> m_failures;
};

}  // namespace GenApi
