/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IDeviceInfo: what a description says about itself
 */
#pragma once

#include "Base/GCString.h"
#include "GenApi/Types.h"

namespace GenApi {

struct Version_t {
    std::uint16_t Major = 0;
    std::uint16_t Minor = 0;
    std::uint16_t SubMinor = 0;

    friend bool operator==(const Version_t& left, const Version_t& right) noexcept {
        return left.Major == right.Major && left.Minor == right.Minor && left.SubMinor == right.SubMinor;
    }
    friend bool operator!=(const Version_t& left, const Version_t& right) noexcept { return !(left == right); }
};

struct IDeviceInfo {
    virtual GenICam::gcstring GetModelName() const = 0;
    virtual GenICam::gcstring GetVendorName() const = 0;
    virtual GenICam::gcstring GetToolTip() const = 0;
    virtual GenICam::gcstring GetStandardNameSpace() const = 0;
    virtual void GetGenApiVersion(Version_t& version, std::uint16_t& build) const = 0;
    virtual void GetSchemaVersion(Version_t& version) const = 0;
    virtual void GetDeviceVersion(Version_t& version) const = 0;
    virtual GenICam::gcstring GetProductGuid() const = 0;
    virtual GenICam::gcstring GetVersionGuid() const = 0;

protected:
    IDeviceInfo() = default;
    IDeviceInfo(const IDeviceInfo&) = default;
    IDeviceInfo& operator=(const IDeviceInfo&) = default;
    ~IDeviceInfo() = default;
};

}  // namespace GenApi
