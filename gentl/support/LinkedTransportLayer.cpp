/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer that is linked into the producer: a consumer brings libraries of its own, GenApi for example, and
 * whatever was loaded at run time would have to be kept apart from them
 */
#include "support/LinkedTransportLayer.h"

#include "support/GenTLError.h"
#include "support/Log.h"
#include "vanto/TlFactory.h"

namespace Vanto {

extern "C" {
GetTLInfoListFunction GetTLInfoList;
CreateFunction Create;
DestroyFunction Destroy;
}

}  // namespace Vanto

namespace gentl {

/// Makes what lives as long as the process, so that it is destroyed after what uses it.
void PrepareTransportLayer() {
    Vanto::CTlFactory::GetInstance();
    LogCategory();
    Vanto::TlInfoList list;
    Vanto::GetTLInfoList(list);
}

Vanto::ITransportLayer* CreateTransportLayer() {
    Vanto::TlInfoList list;
    Vanto::GetTLInfoList(list);
    Vanto::ITransportLayer* const layer = Vanto::Create(list.front());
    if (layer == nullptr)
        throw GenTLError(GC_ERR_ERROR, "The transport layer can't be made");
    return layer;
}

void DestroyTransportLayer(Vanto::ITransportLayer* layer) {
    Vanto::Destroy(layer);
}

}  // namespace gentl
