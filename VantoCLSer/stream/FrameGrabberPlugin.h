/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The frame-grabber plug-in of a stream grabber: choosing, loading, calling, unloading
 */
#pragma once

#include "VantoCLSer/base/LibraryLoader.h"
#include "vanto/FgPlugin.h"

namespace Vanto {

/// One loaded plug-in and the grabber object that it made. Foreign exceptions become RuntimeException or are logged:
/// none leaves the plug-in, whose code may be unloaded before the exception is. Guarded by its owner.
class CFrameGrabberPlugin {
public:
    explicit CFrameGrabberPlugin(const gcstring& parameters);

    void CheckParameters() const;
    void Load();
    void Init(FgCallee* callee);
    void Release() noexcept;

    void StartGrab();
    void StopGrab() noexcept;
    bool GetValue(std::uint32_t parameter, std::uint64_t& value) noexcept;
    bool PoCLControl(std::uint32_t command, std::int32_t& result) noexcept;

private:
    void LoadLibrary(const gcstring& path);
    IFrameGrabber& Grabber() const;
    gcstring GetLastErrorText() const;
    void DestroyGrabber() noexcept;

    const gcstring m_parameters;
    CLibraryLoader m_library;
    IFrameGrabber* m_grabber = nullptr;  // the plug-in's
};

}  // namespace Vanto
