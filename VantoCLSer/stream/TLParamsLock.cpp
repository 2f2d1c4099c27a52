/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Keeps the camera's features that a running grab relies on from being changed
 */

#include "VantoCLSer/stream/TLParamsLock.h"

#include "GenApi/GenApi.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";
constexpr const char* kLockedFeatures[] = {"ClTapGeometry", "PixelFormat",       "Width",
                                           "Height",        "BinningHorizontal", "BinningVertical"};

}  // namespace

void SetTLParamsLocked(GenApi::INodeMap* camera, bool locked) {
    if (camera == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Missing device nodemap.");
    const GenApi::CIntegerPtr lock = camera->GetNode("TLParamsLocked");
    if (!lock.IsValid())
        throw VANTO_EXCEPTION(PropertyException, kSource)("TLParamsLocked node missing from device nodemap.");
    lock->SetValue(locked ? 1 : 0, true);
    for (const char* name : kLockedFeatures) {
        if (GenApi::INode* node = camera->GetNode(name))
            node->ImposeAccessMode(locked ? GenApi::RO : GenApi::RW);
    }
}

}  // namespace Vanto
