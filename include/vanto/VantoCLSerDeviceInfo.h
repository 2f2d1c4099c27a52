/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The device info record of a camera on a Camera Link serial port
 */
#pragma once

#include "vanto/Info.h"

#ifdef VantoCLSer_EXPORTS
#define VANTOCLSER_API GCBASE_EXPORT
#elif defined(VANTOCLSER_STATIC)
#define VANTOCLSER_API
#else
#define VANTOCLSER_API GCBASE_IMPORT
#endif

namespace Vanto {

/// A device info record with the Camera Link serial properties. Getters of an absent property return
/// CInfoBase::PropertyNotAvailable. Reentrant.
class VANTOCLSER_API CVantoCLSerDeviceInfo : public CDeviceInfo {
public:
    /// A record with the device class "MarlowCameraLink" and nothing else.
    CVantoCLSerDeviceInfo();
    /// A copy of all properties, device class included.
    CVantoCLSerDeviceInfo(const CDeviceInfo& other);
    /// A copy of all properties.
    CVantoCLSerDeviceInfo(const CVantoCLSerDeviceInfo& other);
    /// Becomes a copy of all properties.
    CVantoCLSerDeviceInfo& operator=(const CVantoCLSerDeviceInfo& other);
    ~CVantoCLSerDeviceInfo() override;

    /// The port as CLProtocol names it: maker of the serial library, '#', port name.
    gcstring GetPortID() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetPortID(const gcstring& value);
    /// Whether it is set.
    bool IsPortIDAvailable() const;

    /// The camera as CLProtocol names it, driver included.
    gcstring GetDeviceID() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetDeviceID(const gcstring& value);
    /// Whether it is set.
    bool IsDeviceIDAvailable() const;

    /// The entry of the camera's baud-rate node to set on opening; empty for the fastest.
    gcstring GetInitialBaudRate() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetInitialBaudRate(const gcstring& value);
    /// Whether it is set.
    bool IsInitialBaudRateAvailable() const;

    /// Path of a description file to use in place of the camera's own.
    gcstring GetDeviceXMLFileOverride() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetDeviceXMLFileOverride(const gcstring& value);
    /// Whether it is set.
    bool IsDeviceXMLFileOverrideAvailable() const;

    /// Free text of the port's configuration entry; selects the frame-grabber plug-in.
    gcstring GetDeviceSpecificString() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetDeviceSpecificString(const gcstring& value);
    /// Whether it is set.
    bool IsDeviceSpecificStringAvailable() const;

    /// Free text of the port.
    gcstring GetPortSpecificString() const;
    /// Sets it.
    CVantoCLSerDeviceInfo& SetPortSpecificString(const gcstring& value);
    /// Whether it is set.
    bool IsPortSpecificStringAvailable() const;
};

}  // namespace Vanto
