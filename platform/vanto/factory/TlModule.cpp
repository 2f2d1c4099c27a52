/* SPDX-License-Identifier: Apache-2.0 */
/*
 * TlModule: one library with transport layers, and the transport layers that it has made
 */

#include "factory/TlModule.h"

#include <algorithm>
#include <new>
#include <utility>

#include "Base/GCException.h"
#include "factory/ExceptionText.h"
#include "factory/FactoryLog.h"
#include "os/Library.h"

namespace Vanto {

/**
 * \brief Look up what a transport-layer library must export, and ask it what it offers
 * \param[in] library The library; must stay loaded for as long as the module lives
 * \throw LibraryError It lacks one of the functions; names the library and the function
 * \throw RuntimeException It offers no usable transport layer
 * \throw std::bad_alloc It has no memory at the moment
 */
TlModule::TlModule(const os::Library& library)
    : m_path(library.Path()),
      m_getTlInfoList(library.Get<GetTLInfoListFunction>("GetTLInfoList")),
      m_create(library.Get<CreateFunction>("Create")),
      m_destroy(library.Get<DestroyFunction>("Destroy")) {
    ReadInfos();
}

void TlModule::ReadInfos() {
    TlInfoList offered;
    try {
        // What counts is what it added, not what it says that it added.
        m_getTlInfoList(offered);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        throw RUNTIME_EXCEPTION("GetTLInfoList failed: %s", DescribeCurrentException());
    }
    for (CTlInfo& info : offered) {
        if (info.IsDeviceClassAvailable() && !info.GetDeviceClass().empty()) {
            info.SetFileName(m_path);
            m_infos.push_back(info);
        }
    }
    if (m_infos.empty())
        throw RUNTIME_EXCEPTION("GetTLInfoList offers no transport layer with a device class");
}

TlModule::Made* TlModule::Find(const ITransportLayer* tl) {
    const auto found = std::find_if(m_made.begin(), m_made.end(), [&](const Made& made) { return made.tl == tl; });
    return found != m_made.end() ? &*found : nullptr;
}

/**
 * \brief The transport layer of a record, made if there is none now
 * \param[in] info One of Infos()
 * \param[in] keep Hand it out once more to the factory itself, unless that was done already
 * \return The transport layer, to be given back once; null when the library makes none
 *
 * An exception of the library passes.
 */
ITransportLayer* TlModule::HandOut(const CTlInfo& info, bool keep) {
    const std::lock_guard lock(m_mutex);
    Made* const made = FindOrMake(info);
    if (made == nullptr)
        return nullptr;
    if (keep && !std::exchange(made->kept, true))
        ++made->extra;
    return made->tl;
}

TlModule::Made* TlModule::FindOrMake(const CTlInfo& info) {
    const gcstring name = info.GetFullName();
    for (Made& made : m_made) {
        if (std::find(made.names.begin(), made.names.end(), name) != made.names.end()) {
            ++made.extra;
            return &made;
        }
    }
    ITransportLayer* const tl = m_create(info);
    if (tl == nullptr) {
        LogTrace(FactoryLog(), tracelog::kWarning, "The library '%s' makes no transport layer '%s'.", m_path, name);
        return nullptr;
    }
    if (Made* const made = Find(tl)) {  // one object for several records
        made->names.push_back(name);
        ++made->extra;
        return made;
    }
    m_made.push_back({.tl = tl, .names = {name}, .extra = 0, .kept = false});
    return &m_made.back();
}

/**
 * \brief Hand out a transport layer once more, if this module has made it and it still stands
 */
bool TlModule::HandOutAgain(const ITransportLayer* tl) {
    const std::lock_guard lock(m_mutex);
    Made* const made = Find(tl);
    if (made == nullptr)
        return false;
    ++made->extra;
    return true;
}

/**
 * \brief Take back a transport layer; destroy it when nobody holds it and none of its devices is left
 */
TlModule::GivenBack TlModule::GiveBack(const ITransportLayer* tl) {
    const std::lock_guard lock(m_mutex);
    Made* const made = Find(tl);
    if (made == nullptr)
        return GivenBack::kNotMine;
    if (made->extra > 0) {
        --made->extra;
        return GivenBack::kHeld;
    }
    ITransportLayer* const held = made->tl;
    auto* const counted = dynamic_cast<ITransportLayerPrivate*>(held);
    if (counted != nullptr && counted->Release() != 0)
        return GivenBack::kHeld;
    std::erase_if(m_made, [&](const Made& one) { return one.tl == held; });
    m_destroy(held);
    return GivenBack::kDestroyed;
}

std::vector<ITransportLayer*> TlModule::GetMade() const {
    const std::lock_guard lock(m_mutex);
    std::vector<ITransportLayer*> result;
    for (const Made& made : m_made)
        result.push_back(made.tl);
    return result;
}

/**
 * \brief The transport layers that were handed out to the factory itself, which now has to give them back
 */
std::vector<ITransportLayer*> TlModule::TakeKept() {
    const std::lock_guard lock(m_mutex);
    std::vector<ITransportLayer*> result;
    for (Made& made : m_made) {
        if (std::exchange(made.kept, false))
            result.push_back(made.tl);
    }
    return result;
}

TlLease::~TlLease() {
    if (m_tl == nullptr)
        return;
    try {
        m_module.GiveBack(m_tl);
    } catch (...) {
        LogTrace(FactoryLog(), tracelog::kError, "A transport layer of '%s' can't be given back: %s", m_module.Path(),
                 DescribeCurrentException());
    }
}

}  // namespace Vanto
