/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of exchanges have in common
 */
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "Rig.h"

namespace marlow::test {

struct ExchangerTest : testing::Test, MemoryRig {
    gencp::Bytes ReadVersion() { return memory.Read(gencp::abrm::kGenCpVersion); }
    std::vector<std::uint16_t> ReceivedIds() const {
        std::vector<std::uint16_t> ids;
        for (const auto& packet : camera.received)
            ids.push_back(packet.header.requestId);
        return ids;
    }
};

}  // namespace marlow::test
