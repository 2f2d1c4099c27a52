/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CTlFactory::Impl: the factory's work over all transport layers
 */

#include "factory/TlFactoryImpl.h"

#include <algorithm>
#include <exception>

#include "Base/GCException.h"
#include "factory/ExceptionText.h"
#include "factory/FactoryLog.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

// One object may stand for several records.
bool WasAsked(const std::vector<std::unique_ptr<const TlLease>>& asked, const TlLease& tl) {
    return std::any_of(asked.begin(), asked.end(), [&](const auto& one) { return one->Get() == tl.Get(); });
}

}  // namespace

std::shared_ptr<const TlCatalogue> CTlFactory::Impl::Known() {
    const std::lock_guard lock(m_mutex);
    return m_catalogue;
}

// The first look is the last, unless the system was short of something meanwhile.
std::shared_ptr<const TlCatalogue> CTlFactory::Impl::Catalogue() {
    const auto isWhole = [](const auto& catalogue) { return catalogue != nullptr && catalogue->IsComplete(); };
    if (auto known = Known(); isWhole(known))
        return known;
    const std::lock_guard looking(m_looking);
    const auto earlier = Known();
    if (isWhole(earlier))
        return earlier;
    auto found = std::make_shared<const TlCatalogue>(getVantoFolderPath(eTransportLayerFolder).str(), earlier.get());
    const std::lock_guard lock(m_mutex);
    m_catalogue = found;
    return found;
}

TlModule::GivenBack CTlFactory::Impl::GiveBack(const ITransportLayer* tl) {
    // A transport layer that the factory has made can only come from a catalogue that is there.
    const auto catalogue = Known();
    if (catalogue == nullptr)
        return TlModule::GivenBack::kNotMine;
    for (const auto& module : catalogue->Modules()) {
        const TlModule::GivenBack result = module->GiveBack(tl);
        if (result == TlModule::GivenBack::kDestroyed) {
            const std::lock_guard lock(m_mutex);
            std::erase_if(m_owners, [&](const auto& entry) { return entry.second == tl; });
        }
        if (result != TlModule::GivenBack::kNotMine)
            return result;
    }
    return TlModule::GivenBack::kNotMine;
}

// Asks several transport layers. One that fails keeps nobody from the devices of the others; when all fail, the first
// failure is the answer.
std::vector<CTlFactory::Impl::Match> CTlFactory::Impl::Enumerate(const std::vector<TlOffer>& offers,
                                                                 const DeviceInfoList& filter) {
    std::vector<Match> found;
    std::vector<std::unique_ptr<const TlLease>> asked;
    std::exception_ptr firstFailure;
    bool anySucceeded = false;
    for (const TlOffer& offer : offers) {
        try {
            auto tl = std::make_unique<const TlLease>(*offer.module, offer.info);
            if (!*tl || WasAsked(asked, *tl))
                continue;
            asked.push_back(std::move(tl));
            DeviceInfoList devices;
            (*asked.back())->EnumerateDevices(devices, filter, true);
            for (const CDeviceInfo& device : devices)
                found.push_back({offer, device});
            anySucceeded = true;
        } catch (...) {
            LogTrace(FactoryLog(), tracelog::kError, "The transport layer '%s' can't enumerate its devices: %s",
                     offer.info.GetFullName(), DescribeCurrentException());
            if (firstFailure == nullptr)
                firstFailure = std::current_exception();
        }
    }
    if (!anySucceeded && firstFailure != nullptr)
        std::rethrow_exception(firstFailure);
    return found;
}

// Resolves a partial record when several transport layers may offer the device; with one, that one resolves it itself.
std::optional<CTlFactory::Impl::Match> CTlFactory::Impl::Resolve(const std::vector<TlOffer>& offers,
                                                                 const CDeviceInfo& info, bool allowAmbiguous) {
    if (offers.size() == 1)
        return std::nullopt;
    DeviceInfoList filter;
    filter.push_back(info);
    std::vector<Match> matches = Enumerate(offers, filter);
    if (matches.empty()) {
        throw RUNTIME_EXCEPTION(
            "No device of any transport layer contains the provided device info properties. Enumerate the devices to "
            "see which there are.");
    }
    if (matches.size() > 1 && !allowAmbiguous) {
        throw RUNTIME_EXCEPTION(
            "Ambiguous device info properties. %u devices contain the provided device info properties. Give more of "
            "them, the serial number for example.",
            matches.size());
    }
    return matches.front();
}

IVantoDevice* CTlFactory::Impl::Create(const CDeviceInfo& info, const gcstring_vector& injectedXml,
                                       bool allowAmbiguous) {
    const std::vector<TlOffer> offers = Catalogue()->OffersFor(info);
    const Match chosen = Resolve(offers, info, allowAmbiguous).value_or(Match{offers.front(), info});
    const TlLease tl(*chosen.offer.module, chosen.offer.info);
    if (!tl)
        throw RUNTIME_EXCEPTION("The transport layer '%s' can't be created.", chosen.offer.info.GetFullName());
    IVantoDevice* const device =
        allowAmbiguous ? tl->CreateFirstDevice(chosen.info, injectedXml) : tl->CreateDevice(chosen.info, injectedXml);
    if (device == nullptr)
        throw RUNTIME_EXCEPTION("The transport layer '%s' has created no device.", chosen.offer.info.GetFullName());
    return Remember(device, tl.Get());
}

IVantoDevice* CTlFactory::Impl::CreateNamed(const gcstring& fullName) {
    for (const TlOffer& offer : Catalogue()->OffersFor(CDeviceInfo())) {
        const TlLease tl(*offer.module, offer.info);
        IVantoDevice* const device = tl ? tl->CreateDevice(fullName) : nullptr;
        if (device != nullptr)
            return Remember(device, tl.Get());
    }
    throw RUNTIME_EXCEPTION("There is no device '%s'. Enumerate the devices to see which there are.", fullName);
}

IVantoDevice* CTlFactory::Impl::Remember(IVantoDevice* device, ITransportLayer* tl) {
    const std::lock_guard lock(m_mutex);
    m_owners.insert_or_assign(device, tl);
    return device;
}

// The transport layer that made a device through the factory, then all others: an application may have asked one of
// them itself.
std::vector<ITransportLayer*> CTlFactory::Impl::PossibleOwners(IVantoDevice* device) {
    std::vector<ITransportLayer*> owners;
    {
        const std::lock_guard lock(m_mutex);
        if (const auto known = m_owners.extract(device))
            owners.push_back(known.mapped());
    }
    const auto catalogue = Catalogue();
    for (const auto& module : catalogue->Modules()) {
        for (ITransportLayer* tl : module->GetMade()) {
            if (owners.empty() || owners.front() != tl)
                owners.push_back(tl);
        }
    }
    return owners;
}

bool CTlFactory::Impl::DestroyBy(ITransportLayer* tl, IVantoDevice* device) {
    const auto catalogue = Catalogue();
    for (const auto& module : catalogue->Modules()) {
        const TlLease held(*module, tl);
        if (!held)
            continue;
        try {
            held->DestroyDevice(device);
            return true;
        } catch (const GenICam::LogicalErrorException&) {  // it is not this one's
            return false;
        }
    }
    return false;
}

void CTlFactory::Impl::Destroy(IVantoDevice* device) {
    for (ITransportLayer* tl : PossibleOwners(device)) {
        if (DestroyBy(tl, device))
            return;
    }
    throw LOGICAL_ERROR_EXCEPTION("Trying to destroy a device that no transport layer of the factory has created.");
}

}  // namespace Vanto
