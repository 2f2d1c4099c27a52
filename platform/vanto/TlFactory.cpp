/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CTlFactory: the application's way to transport layers and devices
 */

#include "vanto/TlFactory.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "Base/GCException.h"
#include "ExceptionText.h"
#include "TlCatalogue.h"
#include "vanto/TraceLog.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

tracelog::CategoryId LogCategory() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("vanto.base.Factory");
    return category;
}

bool MaySelect(const DeviceInfoList& filter, const CTlInfo& tl) {
    return filter.empty() || std::any_of(filter.begin(), filter.end(), [&](const CDeviceInfo& entry) {
               return !entry.IsDeviceClassAvailable() || entry.GetDeviceClass() == tl.GetDeviceClass();
           });
}

// One object may stand for several records.
bool WasAsked(const std::vector<std::unique_ptr<const TlLease>>& asked, const TlLease& tl) {
    return std::any_of(asked.begin(), asked.end(), [&](const auto& one) { return one->Get() == tl.Get(); });
}

// A device that a partial record was resolved to, and the transport layer that offers it.
struct Match {
    TlOffer offer;
    CDeviceInfo info;
};

}  // namespace

/// The catalogue, and which transport layer made which device.
class CTlFactory::Impl {
public:
    const TlCatalogue& Catalogue();
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

    std::once_flag m_loaded;
    std::unique_ptr<const TlCatalogue> m_catalogue;
    std::atomic<const TlCatalogue*> m_ready{nullptr};
    std::mutex m_mutex;  // guards m_owners; nothing of others is called with it
    std::map<IVantoDevice*, ITransportLayer*> m_owners;
};

const TlCatalogue& CTlFactory::Impl::Catalogue() {
    std::call_once(m_loaded, [this] {
        m_catalogue = std::make_unique<const TlCatalogue>(getVantoFolderPath(eTransportLayerFolder).str());
        m_ready.store(m_catalogue.get(), std::memory_order_release);
    });
    return *m_catalogue;
}

TlModule::GivenBack CTlFactory::Impl::GiveBack(const ITransportLayer* tl) {
    // A transport layer that the factory has made can only come from a catalogue that is there.
    const TlCatalogue* const catalogue = m_ready.load(std::memory_order_acquire);
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
std::vector<Match> CTlFactory::Impl::Enumerate(const std::vector<TlOffer>& offers, const DeviceInfoList& filter) {
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
            LogTrace(LogCategory(), tracelog::kError, "The transport layer '%s' can't enumerate its devices: %s",
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
std::optional<Match> CTlFactory::Impl::Resolve(const std::vector<TlOffer>& offers, const CDeviceInfo& info,
                                               bool allowAmbiguous) {
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
    const std::vector<TlOffer> offers = Catalogue().OffersFor(info);
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
    for (const TlOffer& offer : Catalogue().OffersFor(CDeviceInfo())) {
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
    for (const auto& module : Catalogue().Modules()) {
        for (ITransportLayer* tl : module->GetMade()) {
            if (owners.empty() || owners.front() != tl)
                owners.push_back(tl);
        }
    }
    return owners;
}

bool CTlFactory::Impl::DestroyBy(ITransportLayer* tl, IVantoDevice* device) {
    for (const auto& module : Catalogue().Modules()) {
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

CTlFactory::CTlFactory() : m_impl(std::make_unique<Impl>()) {}

CTlFactory::~CTlFactory() = default;

/**
 * \class CTlFactory
 * \brief The application's way to transport layers and devices
 *
 * Transport layers lie as libraries in the folder eTransportLayerFolder. They are loaded at the first use, once per
 * process, and never unloaded.
 *
 * CreateTl hands out a transport layer, to be given back with ReleaseTl. A transport layer that the factory has used
 * for itself (EnumerateDevices, CreateDevice, CreateFirstDevice, IsDeviceAccessible) it keeps, so that what it knows
 * of its ports lasts from one enumeration to the next; ReleaseUnusedTls gives those back. A transport layer is
 * destroyed when nobody holds it and its last device is destroyed.
 */

/**
 * \brief The one factory
 *
 * It is never destroyed: at the end of the process the static objects of the loaded libraries, which would be needed
 * to destroy their transport layers, go before it does.
 */
CTlFactory& CTlFactory::GetInstance() {
    static CTlFactory* const instance = new CTlFactory;  // the constructor is nobody else's
    return *instance;
}

/**
 * \brief The transport layers that can be created
 * \param[out] list Replaced by their records; the property FileName is the library's path
 * \return How many there are
 */
int CTlFactory::EnumerateTls(TlInfoList& list) {
    list.clear();
    for (const TlOffer& offer : m_impl->Catalogue().AllOffers())
        list.push_back(offer.info);
    return static_cast<int>(list.size());
}

/**
 * \brief Hand out the first transport layer whose record contains every property of \a info
 * \return The transport layer, to be given back with ReleaseTl; null when there is none
 *
 * An exception of the library passes.
 */
ITransportLayer* CTlFactory::CreateTl(const CTlInfo& info) {
    for (const TlOffer& offer : m_impl->Catalogue().AllOffers()) {
        if (offer.info.IsSubset(info))
            return offer.module->HandOut(offer.info);
    }
    return nullptr;
}

/**
 * \brief Hand out the first transport layer of a device class
 * \return The transport layer, to be given back with ReleaseTl; null when there is none
 */
ITransportLayer* CTlFactory::CreateTl(const gcstring& deviceClass) {
    CTlInfo info;
    info.SetDeviceClass(deviceClass);
    return CreateTl(info);
}

/**
 * \brief Give back a transport layer, once per CreateTl; a transport layer calls it itself for each destroyed device
 * \param[in] tl Null is ignored. A transport layer that the factory has not made only gets its reference back.
 *
 * \context Thread-safe; also from within an operation of that very transport layer, as its last act.
 */
void CTlFactory::ReleaseTl(const ITransportLayer* tl) {
    if (tl == nullptr || m_impl->GiveBack(tl) != TlModule::GivenBack::kNotMine)
        return;
    if (auto* const counted = dynamic_cast<ITransportLayerPrivate*>(const_cast<ITransportLayer*>(tl)))
        counted->Release();
}

/**
 * \brief Give back the transport layers that the factory keeps for itself; those in use by others stay
 */
void CTlFactory::ReleaseUnusedTls() {
    for (const auto& module : m_impl->Catalogue().Modules()) {
        for (const ITransportLayer* tl : module->TakeKept())
            ReleaseTl(tl);
    }
}

/**
 * \brief What in the folder of transport layers could not be used, and why
 */
std::vector<RejectedTl> CTlFactory::GetRejectedTls() const {
    return m_impl->Catalogue().Rejected();
}

/**
 * \brief Enumerate the devices of all transport layers
 * \param[in,out] list Gets the records appended
 * \param[in] filter Partial records of which a device must match one; empty for all devices. Transport layers whose
 * device class no entry allows are not asked.
 * \param[in] addToList Keep what is in \a list
 * \return How many were appended
 *
 * A transport layer that fails is logged at error; its exception passes only when no other could be asked.
 */
int CTlFactory::EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList) {
    if (!addToList)
        list.clear();
    std::vector<TlOffer> offers = m_impl->Catalogue().AllOffers();
    std::erase_if(offers, [&](const TlOffer& offer) { return !MaySelect(filter, offer.info); });
    const std::vector<Match> found = m_impl->Enumerate(offers, filter);
    for (const Match& match : found)
        list.push_back(match.info);
    return static_cast<int>(found.size());
}

int CTlFactory::EnumerateDevices(DeviceInfoList& list, bool addToList) {
    return EnumerateDevices(list, DeviceInfoList(), addToList);
}

/**
 * \brief Create the device of a full name
 * \throw RuntimeException There is none
 */
IVantoDevice* CTlFactory::CreateDevice(const gcstring& fullName) {
    return m_impl->CreateNamed(fullName);
}

/**
 * \brief Create a device, to be destroyed with DestroyDevice
 * \param[in] info A record, whole or partial. Its DeviceFactory names the transport layer, else its device class does;
 * without both every transport layer is asked, and exactly one device must match.
 * \param[in] injectedXml XML to merge into the camera's description
 * \throw RuntimeException No transport layer or no device, or several devices, fit; says what there is
 *
 * Exceptions of the transport layer pass.
 */
IVantoDevice* CTlFactory::CreateDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) {
    return m_impl->Create(info, injectedXml, false);
}

IVantoDevice* CTlFactory::CreateDevice(const CDeviceInfo& info) {
    return CreateDevice(info, gcstring_vector());
}

/**
 * \brief Like CreateDevice, but with the first of several devices that match
 */
IVantoDevice* CTlFactory::CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) {
    return m_impl->Create(info, injectedXml, true);
}

IVantoDevice* CTlFactory::CreateFirstDevice(const CDeviceInfo& info) {
    return CreateFirstDevice(info, gcstring_vector());
}

/**
 * \brief Destroy a device through the transport layer that made it
 * \throw LogicalErrorException No transport layer of the factory has made it
 */
void CTlFactory::DestroyDevice(IVantoDevice* device) {
    m_impl->Destroy(device);
}

/**
 * \brief Whether a device could be opened
 * \param[in] info A record, whole or partial, as for CreateDevice
 * \param[out] accessibility May be null
 */
bool CTlFactory::IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode, AccessibilityCode* accessibility) {
    const std::vector<TlOffer> offers = m_impl->Catalogue().OffersFor(info);
    const Match chosen = m_impl->Resolve(offers, info, false).value_or(Match{offers.front(), info});
    const TlLease tl(*chosen.offer.module, chosen.offer.info);
    if (!tl)
        throw RUNTIME_EXCEPTION("The transport layer '%s' can't be created.", chosen.offer.info.GetFullName());
    return tl->IsDeviceAccessible(chosen.info, mode, accessibility);
}

}  // namespace Vanto
