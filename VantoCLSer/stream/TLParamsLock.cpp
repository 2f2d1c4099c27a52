/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Keeps the camera's features that a running grab relies on from being changed
 */

#include "VantoCLSer/stream/TLParamsLock.h"

#include <exception>

#include "GenApi/GenApi.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";
constexpr const char* kLockedFeatures[] = {"ClTapGeometry", "PixelFormat",       "Width",
                                           "Height",        "BinningHorizontal", "BinningVertical"};

void SetBoth(GenApi::INodeMap& camera, GenApi::IInteger& lock, bool locked) {
    lock.SetValue(locked ? 1 : 0, true);
    for (const char* name : kLockedFeatures) {
        if (GenApi::INode* node = camera.GetNode(name))
            node->ImposeAccessMode(locked ? GenApi::RO : GenApi::RW);
    }
}

}  // namespace

// Who can't prepare a grab does not finish one either: what is locked by half is unlocked again.
void SetTLParamsLocked(GenApi::INodeMap* camera, bool locked) {
    if (camera == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Missing device nodemap.");
    const GenApi::CIntegerPtr lock = camera->GetNode("TLParamsLocked");
    if (!lock.IsValid())
        throw VANTO_EXCEPTION(PropertyException, kSource)("TLParamsLocked node missing from device nodemap.");
    try {
        SetBoth(*camera, *lock, locked);
    } catch (const std::exception&) {
        try {
            if (locked && lock->GetValue() != 0)
                SetBoth(*camera, *lock, false);
        } catch (const std::exception&) {
            // The end of the next grab unlocks it.
        }
        throw;
    }
}

}  // namespace Vanto
