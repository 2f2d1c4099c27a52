/* SPDX-License-Identifier: Apache-2.0 */
/*
 * TlModule: one library with transport layers, and the transport layers that it has made
 */
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "os/LockName.h"
#include "vanto/TlFactory.h"

namespace os {
class Library;
}

namespace Vanto {

/// Makes, hands out, counts and destroys the transport layers of one library. Thread-safe.
///
/// A transport layer counts one reference for whoever had it made and one for each of its devices; it is destroyed when
/// its own count reaches zero. What is handed out beyond the first time is counted here.
///
/// The library's functions are called with the module's lock held, as they take no lock of their own; no operation of
/// a transport layer but Release is. So a transport layer may give itself back from within any operation.
class TlModule {
public:
    enum class GivenBack { kNotMine, kHeld, kDestroyed };

    explicit TlModule(const os::Library& library);
    TlModule(const TlModule&) = delete;
    TlModule& operator=(const TlModule&) = delete;

    const std::string& Path() const noexcept { return m_path; }
    const TlInfoList& Infos() const noexcept { return m_infos; }

    ITransportLayer* HandOut(const CTlInfo& info, bool keep = false);
    bool HandOutAgain(const ITransportLayer* tl);
    GivenBack GiveBack(const ITransportLayer* tl);
    std::vector<ITransportLayer*> GetMade() const;
    std::vector<ITransportLayer*> TakeKept();

private:
    struct Made {
        ITransportLayer* tl;
        std::vector<gcstring> names;  // full names of the records that it was made for
        unsigned extra;               // how often it was handed out beyond the first time
        bool kept;                    // one of those times for the factory itself
    };

    void ReadInfos();
    Made* Find(const ITransportLayer* tl);
    Made* FindOrMake(const CTlInfo& info);

    const std::string m_path;
    GetTLInfoListFunction* m_getTlInfoList = nullptr;
    CreateFunction* m_create = nullptr;
    DestroyFunction* m_destroy = nullptr;
    TlInfoList m_infos;

    mutable std::recursive_mutex m_mutex;  // recursive: a function of the library may come back to the factory
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "layer's module"};
    std::vector<Made> m_made;
};

/// Holds a transport layer for the time of one operation.
class TlLease {
public:
    TlLease(TlModule& module, const CTlInfo& info) : m_module(module), m_tl(module.HandOut(info, true)) {}
    TlLease(TlModule& module, ITransportLayer* tl) : m_module(module), m_tl(module.HandOutAgain(tl) ? tl : nullptr) {}
    ~TlLease();
    TlLease(const TlLease&) = delete;
    TlLease& operator=(const TlLease&) = delete;

    explicit operator bool() const noexcept { return m_tl != nullptr; }
    ITransportLayer* operator->() const noexcept { return m_tl; }
    ITransportLayer* Get() const noexcept { return m_tl; }

private:
    TlModule& m_module;
    ITransportLayer* m_tl;
};

}  // namespace Vanto
