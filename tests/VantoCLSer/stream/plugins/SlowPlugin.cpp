/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A plug-in whose library takes its time to load, as those do that start a frame grabber's driver; it makes no object
 */

#include <chrono>
#include <thread>

namespace {

// A board's driver takes as long to start.
const bool g_isLoaded = [] {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    return true;
}();

}  // namespace

extern "C" __attribute__((visibility("default"))) void* CreateFrameGrabberObject(const char*) {
    return nullptr;
}

extern "C" __attribute__((visibility("default"))) void DestroyFrameGrabberObject(void*) {}
