/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer's info record
 */

#include "VantoCLSer/VantoCLSerTLInfo.h"

namespace Vanto {

namespace {

// The vendor is the interface, not a company: applications show it beside the names of other interfaces.
constexpr char kInterfaceName[] = "Camera Link";
constexpr char kVersion[] = " 3.2.2.3032";

}  // namespace

/**
 * \brief The one info record that describes this transport layer
 *
 * Built on first use, destroyed when the library is unloaded.
 *
 * \context Any thread
 */
const CTlInfo& GetTLInfo() {
    class CCLSerTlInfo : public CInfoPrivateT<CTlInfo> {
    public:
        CCLSerTlInfo() {
            SetDeviceClass(kDeviceClass);
            SetFullName(gcstring(kInterfaceName) + "/" + kDeviceClass + kVersion);
            SetVendorName(kInterfaceName);
            SetFriendlyName(kInterfaceName);
        }
        bool IsUserProvided() const override { return GetInfoImpl().IsUserProvided(); }
    };
    static const CCLSerTlInfo info;
    return info;
}

}  // namespace Vanto
