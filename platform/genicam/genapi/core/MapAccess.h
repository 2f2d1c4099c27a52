/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One operation of a user on a node map
 */
#pragma once

#include "core/NodeMap.h"

namespace GenApi {

/// Holds the lock of a node map for its own lifetime. What an operation finds out about nodes counts until it is over;
/// operations that it is made of belong to it.
class MapAccess {
public:
    explicit MapAccess(CNodeMap& map) : m_map(map), m_lock(map.GetLock()) { m_map.BeginAccess(); }
    ~MapAccess() { m_map.EndAccess(); }
    MapAccess(const MapAccess&) = delete;
    MapAccess& operator=(const MapAccess&) = delete;

private:
    CNodeMap& m_map;
    const AutoLock m_lock;
};

/// A call of code of others while the lock is held: what that asks of the node map is an operation of its own.
class ForeignCall {
public:
    explicit ForeignCall(CNodeMap& map) noexcept : m_map(map), m_suspended(map.SuspendAccess()) {}
    ~ForeignCall() { m_map.ResumeAccess(m_suspended); }
    ForeignCall(const ForeignCall&) = delete;
    ForeignCall& operator=(const ForeignCall&) = delete;

private:
    CNodeMap& m_map;
    const OngoingAccess m_suspended;
};

}  // namespace GenApi
