/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the tests tell a scripted transport-layer library, and what it tells them
 */
#pragma once

#include <atomic>

namespace scripted {

enum class CreateMode { kNormal, kNull, kThrow };

struct Control {
    std::atomic<CreateMode> createMode{CreateMode::kNormal};
    std::atomic<bool> failEnumeration{false};
    std::atomic<int> devicesOffered{1};
    std::atomic<bool> makeNoDevice{false};

    std::atomic<int> created{0};
    std::atomic<int> destroyed{0};
    std::atomic<int> enumerations{0};
    std::atomic<int> devices{0};  // that stand now
    std::atomic<int> inCreateOrDestroy{0};
    std::atomic<int> overlaps{0};  // of Create and Destroy, which must not overlap

    void Reset() {
        createMode = CreateMode::kNormal;
        failEnumeration = false;
        devicesOffered = 1;
        makeNoDevice = false;
        created = 0;
        destroyed = 0;
        enumerations = 0;
        overlaps = 0;
    }
};

extern "C" {
using GetControlFunction = Control*();
}

}  // namespace scripted
