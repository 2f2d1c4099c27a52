/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Libraries that the factory has to refuse
 */

#include <stdexcept>

#include "vanto/TlFactory.h"

extern "C" {

#ifdef HAS_LIST
GCBASE_EXPORT int GetTLInfoList([[maybe_unused]] Vanto::TlInfoList& list) {
#ifdef THROWS
    throw THROWS;
#else
    [[maybe_unused]] Vanto::CTlInfo info;
#ifdef OFFERS
    info.SetDeviceClass("Refused");
    list.push_back(info);
#endif
#ifdef OFFERS_CLASSLESS
    info.SetFullName("Refused");
    list.push_back(info);
#endif
    return 1;
#endif
}
#endif

#ifdef HAS_CREATE
GCBASE_EXPORT Vanto::ITransportLayer* Create(const Vanto::CTlInfo&) {
    return nullptr;
}
#endif

#ifdef HAS_DESTROY
GCBASE_EXPORT void Destroy(Vanto::ITransportLayer*) {}
#endif

/// So that a library without any of the three is a library at all.
GCBASE_EXPORT int Nothing() {
    return 0;
}
}
