/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Library: the producer between GCInitLib and GCCloseLib
 */
#pragma once

#include <memory>
#include <mutex>

#include "discovery/Discovery.h"
#include "modules/System.h"
#include "os/LockName.h"
#include "support/HandleTable.h"

namespace gentl {

/// One life of the producer. Thread-safe.
class Library {
public:
    Library() = default;
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    static void Init();
    static void Close();
    static std::shared_ptr<Library> Get();

    HandleTable& Handles() noexcept { return m_handles; }
    std::shared_ptr<System> OpenSystem();

private:
    void Shut() noexcept;

    HandleTable m_handles;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL library"};
    bool m_isShut = false;
    Vanto::ITransportLayer* m_layer = nullptr;
    std::unique_ptr<Discovery> m_discovery;  // also keeps what was found from one system to the next
    std::shared_ptr<System> m_system;
};

}  // namespace gentl
