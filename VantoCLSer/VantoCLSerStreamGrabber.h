/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The stream grabber of a Camera Link device
 */
#pragma once

#include "vanto/StreamGrabber.h"

namespace Vanto {

class CVantoCLSerDevice;

/// The plug-in of a frame grabber is not loaded yet: initialising fails as for a plug-in that can't be loaded.
class CVantoCLSerStreamGrabber : public IStreamGrabber {
public:
    CVantoCLSerStreamGrabber(const gcstring& deviceSpecific, CVantoCLSerDevice* device);
    void Initialize();
};

}  // namespace Vanto
