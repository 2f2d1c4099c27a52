/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CTlFactory::Impl: the factory's work over all transport layers
 */
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "factory/TlCatalogue.h"
#include "os/LockName.h"
#include "vanto/TlFactory.h"

namespace Vanto {

/// The catalogue, and which transport layer made which device. Thread-safe.
class CTlFactory::Impl {
public:
    /// A device, and the transport layer that offers it.
    struct Match {
        TlOffer offer;
        CDeviceInfo info;
    };

    std::shared_ptr<const TlCatalogue> Catalogue();
    TlModule::GivenBack GiveBack(const ITransportLayer* tl);
    std::vector<Match> Enumerate(const std::vector<TlOffer>& offers, const DeviceInfoList& filter);
    IVantoDevice* Create(const CDeviceInfo& info, const gcstring_vector& injectedXml, bool allowAmbiguous);
    IVantoDevice* CreateNamed(const gcstring& fullName);
    void Destroy(IVantoDevice* device);
    std::optional<Match> Resolve(const std::vector<TlOffer>& offers, const CDeviceInfo& info, bool allowAmbiguous);

private:
    IVantoDevice* Remember(IVantoDevice* device, ITransportLayer* tl);
    std::vector<ITransportLayer*> PossibleOwners(IVantoDevice* device);
    bool DestroyBy(ITransportLayer* tl, IVantoDevice* device);

    std::shared_ptr<const TlCatalogue> Known();

    std::mutex m_looking;  // T that loads libraries holds it; others wait for what it finds
    [[no_unique_address]] const os::LockName m_lookingName{&m_looking, "look for layers"};
    std::mutex m_mutex;  // guards what follows; nothing of others is called with it
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "devices of layers"};
    std::shared_ptr<const TlCatalogue> m_catalogue;  // modules that a catalogue has are in all that follow it
    std::map<IVantoDevice*, ITransportLayer*> m_owners;
};

}  // namespace Vanto
