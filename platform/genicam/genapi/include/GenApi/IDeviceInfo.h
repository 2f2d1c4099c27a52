/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IDeviceInfo: what a description says about itself
 */
#pragma once

#include "Base/GCString.h"
#include "GenApi/Types.h"

namespace GenApi {

/// A version of three numbers.
struct Version_t {
    std::uint16_t Major = 0;     ///<  the first number
    std::uint16_t Minor = 0;     ///<  the second number
    std::uint16_t SubMinor = 0;  ///<  the third number

    /// Whether all numbers are the same.
    friend bool operator==(const Version_t& left, const Version_t& right) noexcept {
        return left.Major == right.Major && left.Minor == right.Minor && left.SubMinor == right.SubMinor;
    }
    /// Whether one differs.
    friend bool operator!=(const Version_t& left, const Version_t& right) noexcept { return !(left == right); }
};

/// What the root element of a description says.
struct IDeviceInfo {
    /// The device's model.
    virtual GenICam::gcstring GetModelName() const = 0;
    /// The device's maker.
    virtual GenICam::gcstring GetVendorName() const = 0;
    /// One sentence about the device; may be empty.
    virtual GenICam::gcstring GetToolTip() const = 0;
    /// "None", "IIDC", "GEV", "CL" or "USB".
    virtual GenICam::gcstring GetStandardNameSpace() const = 0;
    /// The version of this library.
    virtual void GetGenApiVersion(Version_t& version, std::uint16_t& build) const = 0;
    /// The version of the schema that the description follows.
    virtual void GetSchemaVersion(Version_t& version) const = 0;
    /// The version of the description.
    virtual void GetDeviceVersion(Version_t& version) const = 0;
    /// Names the product that the description is for.
    virtual GenICam::gcstring GetProductGuid() const = 0;
    /// Names this very description.
    virtual GenICam::gcstring GetVersionGuid() const = 0;

protected:
    IDeviceInfo() = default;
    IDeviceInfo(const IDeviceInfo&) = default;
    IDeviceInfo& operator=(const IDeviceInfo&) = default;
    ~IDeviceInfo() = default;
};

}  // namespace GenApi
