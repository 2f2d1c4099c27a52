/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CTlFactory: the application's way to transport layers and devices
 */

#include "vanto/TlFactory.h"

#include <algorithm>

#include "Base/GCException.h"
#include "factory/TlFactoryImpl.h"

namespace Vanto {

namespace {

bool MaySelect(const DeviceInfoList& filter, const CTlInfo& tl) {
    return filter.empty() || std::any_of(filter.begin(), filter.end(), [&](const CDeviceInfo& entry) {
               return !entry.IsDeviceClassAvailable() || entry.GetDeviceClass() == tl.GetDeviceClass();
           });
}

}  // namespace

CTlFactory::CTlFactory() : m_impl(std::make_unique<Impl>()) {}

CTlFactory::~CTlFactory() = default;

/**
 * \class CTlFactory
 * \brief The application's way to transport layers and devices
 *
 * Transport layers lie as libraries in the folder eTransportLayerFolder. They are loaded at the first use, once per
 * process, and never unloaded. Where the system had no memory or no descriptors for one, the next use tries again.
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
    for (const TlOffer& offer : m_impl->Catalogue()->AllOffers())
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
    for (const TlOffer& offer : m_impl->Catalogue()->AllOffers()) {
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
    const auto catalogue = m_impl->Catalogue();
    for (const auto& module : catalogue->Modules()) {
        for (const ITransportLayer* tl : module->TakeKept())
            ReleaseTl(tl);
    }
}

/**
 * \brief What in the folder of transport layers could not be used, and why
 */
std::vector<RejectedTl> CTlFactory::GetRejectedTls() const {
    return m_impl->Catalogue()->Rejected();
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
    std::vector<TlOffer> offers = m_impl->Catalogue()->AllOffers();
    std::erase_if(offers, [&](const TlOffer& offer) { return !MaySelect(filter, offer.info); });
    const std::vector<Impl::Match> found = m_impl->Enumerate(offers, filter);
    for (const Impl::Match& match : found)
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
 * \param[in] mode How it would be opened
 * \param[out] accessibility Why it can't be; may be null
 */
bool CTlFactory::IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode, AccessibilityCode* accessibility) {
    const std::vector<TlOffer> offers = m_impl->Catalogue()->OffersFor(info);
    const Impl::Match chosen = m_impl->Resolve(offers, info, false).value_or(Impl::Match{offers.front(), info});
    const TlLease tl(*chosen.offer.module, chosen.offer.info);
    if (!tl)
        throw RUNTIME_EXCEPTION("The transport layer '%s' can't be created.", chosen.offer.info.GetFullName());
    return tl->IsDeviceAccessible(chosen.info, mode, accessibility);
}

}  // namespace Vanto
