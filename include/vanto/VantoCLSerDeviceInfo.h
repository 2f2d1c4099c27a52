/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The device info record of a camera on a Camera Link serial port
 */
#pragma once

#include "vanto/Info.h"

#ifdef VantoCLSer_EXPORTS
#define VANTOCLSER_API GCBASE_EXPORT
#else
#define VANTOCLSER_API GCBASE_IMPORT
#endif

namespace Vanto {

/// A device info record with the Camera Link serial properties. Getters of an absent property return
/// CInfoBase::PropertyNotAvailable. Reentrant.
class VANTOCLSER_API CVantoCLSerDeviceInfo : public CDeviceInfo {
public:
    CVantoCLSerDeviceInfo();
    CVantoCLSerDeviceInfo(const CDeviceInfo& other);
    CVantoCLSerDeviceInfo(const CVantoCLSerDeviceInfo& other);
    CVantoCLSerDeviceInfo& operator=(const CVantoCLSerDeviceInfo& other);
    ~CVantoCLSerDeviceInfo() override;

    /// The port as CLProtocol names it: maker of the serial library, '#', port name.
    gcstring GetPortID() const;
    CVantoCLSerDeviceInfo& SetPortID(const gcstring& value);
    bool IsPortIDAvailable() const;

    /// The camera as CLProtocol names it, driver included.
    gcstring GetDeviceID() const;
    CVantoCLSerDeviceInfo& SetDeviceID(const gcstring& value);
    bool IsDeviceIDAvailable() const;

    /// The entry of the camera's baud-rate node to set on opening; empty for the fastest.
    gcstring GetInitialBaudRate() const;
    CVantoCLSerDeviceInfo& SetInitialBaudRate(const gcstring& value);
    bool IsInitialBaudRateAvailable() const;

    /// Path of a description file to use in place of the camera's own.
    gcstring GetDeviceXMLFileOverride() const;
    CVantoCLSerDeviceInfo& SetDeviceXMLFileOverride(const gcstring& value);
    bool IsDeviceXMLFileOverrideAvailable() const;

    /// Free text of the port's configuration entry; selects the frame-grabber plug-in.
    gcstring GetDeviceSpecificString() const;
    CVantoCLSerDeviceInfo& SetDeviceSpecificString(const gcstring& value);
    bool IsDeviceSpecificStringAvailable() const;

    /// Free text of the port.
    gcstring GetPortSpecificString() const;
    CVantoCLSerDeviceInfo& SetPortSpecificString(const gcstring& value);
    bool IsPortSpecificStringAvailable() const;
};

}  // namespace Vanto
