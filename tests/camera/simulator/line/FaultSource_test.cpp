/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a bad line does to packets
 */

#include "line/FaultSource.h"

#include <gtest/gtest.h>

#include "gencp/Packet.h"
#include "gencp/StreamParser.h"

namespace MarlowSim {
namespace {

TEST(FaultSource, IsTheSameForTheSameSeed) {
    FaultSettings settings;
    settings.loss = 0.5;
    FaultSource one(7);
    FaultSource two(7);
    for (int packet = 0; packet < 100; ++packet)
        EXPECT_EQ(one.Next(settings).isLost, two.Next(settings).isLost);
    EXPECT_EQ(one.Noise(100), two.Noise(100));
}

TEST(FaultSource, KeepsToTheProbabilities) {
    FaultSettings settings;
    settings.loss = 0.1;
    settings.damage = 1;
    FaultSource source(1);
    int lost = 0;
    for (int packet = 0; packet < 10000; ++packet) {
        const auto fate = source.Next(settings);
        lost += fate.isLost ? 1 : 0;
        EXPECT_TRUE(fate.isDamaged);
        EXPECT_FALSE(fate.isRepeated);
    }
    EXPECT_NEAR(lost, 1000, 200);
}

TEST(FaultSource, LosesThePacketAfterTheCount) {
    FaultSettings settings;
    settings.failAt = 2;
    FaultSource source(1);
    std::vector<bool> lost;
    for (int packet = 0; packet < 5; ++packet)
        lost.push_back(source.Next(settings).isLost);
    EXPECT_EQ(lost, (std::vector<bool>{false, false, true, false, false}));
    EXPECT_FALSE(settings.failAt);
}

TEST(FaultSource, PullsTheCableBehindTheLastOfTheCount) {
    FaultSettings settings;
    settings.dropAfter = 3;
    FaultSource source(1);
    std::vector<bool> last;
    for (int packet = 0; packet < 5; ++packet)
        last.push_back(source.Next(settings).isLast);
    EXPECT_EQ(last, (std::vector<bool>{false, false, true, false, false}));
}

TEST(FaultSource, DamagesSoThatAChecksumTells) {
    FaultSource source(3);
    const gencp::Bytes good =
        gencp::BuildAcknowledge(gencp::AcknowledgeOf(gencp::kReadMem), 0, 1, gencp::Bytes(50, 0xA5));
    for (int round = 0; round < 5000; ++round) {
        const gencp::Bytes bad = source.Damage(good);
        EXPECT_NE(bad, good);
        gencp::StreamParser parser;
        parser.Append(bad);
        EXPECT_FALSE(parser.Next());
    }
}

}  // namespace
}  // namespace MarlowSim
