/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The load hook where the loader runs constructors and destructors in place of an entry function
 */

#include "VantoCLSer/module/LoadHook.h"

namespace Vanto {

namespace {

struct Attachment {
    Attachment() noexcept { OnLoadNotification(this, kProcessAttach); }
    ~Attachment() { OnLoadNotification(this, kProcessDetach); }
};

const Attachment attachment;

}  // namespace

void SwitchOffThreadNotifications(void*) noexcept {}

}  // namespace Vanto
