/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The two exports of the plug-in
 */

#include <new>

#include "SimulatedGrabber.h"

VANTO_FG_EXPORT Vanto::IFrameGrabber* CreateFrameGrabberObject(const char*) noexcept {
    return new (std::nothrow) grabber::SimulatedGrabber();
}

VANTO_FG_EXPORT void DestroyFrameGrabberObject(Vanto::IFrameGrabber* grabber) noexcept {
    delete static_cast<grabber::SimulatedGrabber*>(grabber);
}
