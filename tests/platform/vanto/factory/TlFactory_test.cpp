/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/TlFactory.h"

#include <gmock/gmock.h>
#include "vanto/TlFactory.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "TlFactoryFixture.h"
#include "os/Library.h"
#include "scripted/ScriptedControl.h"
#include "vanto/LogListener.h"

namespace {

using namespace factory_test;
using testing::HasSubstr;

TEST_F(CTlFactoryTest, ListsTheUsableTransportLayersInTheOrderOfTheirFiles) {
    TlInfoList list;
    list.push_back(CTlInfo());
    ASSERT_EQ(m_factory.EnumerateTls(list), 3);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].GetDeviceClass(), "ScriptedA");
    EXPECT_EQ(list[1].GetDeviceClass(), "ScriptedB");
    EXPECT_EQ(list[2].GetDeviceClass(), "ScriptedC");
    EXPECT_EQ(list[0].GetFileName(), PathOf("scripted_a"));
}

TEST_F(CTlFactoryTest, ListsRefusedLibrariesWithPathAndReason) {
    const std::vector<std::pair<const char*, const char*>> expected{
        {"refused_no_create", "has no function 'Create'"},
        {"refused_no_destroy", "has no function 'Destroy'"},
        {"refused_no_library", "refused_no_library"},
        {"refused_no_list", "has no function 'GetTLInfoList'"},
        {"refused_offers_nothing", "GetTLInfoList offers no transport layer with a device class"},
        {"refused_throws_exception", "GetTLInfoList failed: list exception"},
        {"refused_throws_number", "GetTLInfoList failed: an exception of an unknown type"},
        {"refused_throws_text", "GetTLInfoList failed: list text"},
        {"refused_without_class", "GetTLInfoList offers no transport layer with a device class"}};
    const std::vector<RejectedTl> rejected = m_factory.GetRejectedTls();
    ASSERT_EQ(rejected.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rejected[i].path, PathOf(expected[i].first));
        EXPECT_THAT(rejected[i].reason.str(), HasSubstr(expected[i].second));
    }
}

TEST_F(CTlFactoryTest, CreatesNoneOfAnUnknownClass) {
    EXPECT_EQ(m_factory.CreateTl(gcstring("scripteda")), nullptr);
    EXPECT_EQ(m_factory.CreateTl(gcstring("Refused")), nullptr);
}

TEST_F(CTlFactoryTest, CountsWhatItHandsOut) {
    ITransportLayer* const first = m_factory.CreateTl(gcstring("ScriptedA"));
    ITransportLayer* const second = m_factory.CreateTl(gcstring("ScriptedA"));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(m_a.created, 1);
    m_factory.ReleaseTl(first);
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseTl(second);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, MakesANewOneAfterTheLastWasDestroyed) {
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    EXPECT_EQ(m_a.created, 2);
    EXPECT_EQ(m_a.destroyed, 2);
}

TEST_F(CTlFactoryTest, CountsOneObjectOfTwoRecordsOnce) {
    ITransportLayer* const b = m_factory.CreateTl(gcstring("ScriptedB"));
    ITransportLayer* const c = m_factory.CreateTl(gcstring("ScriptedC"));
    EXPECT_EQ(b, c);
    m_factory.ReleaseTl(b);
    EXPECT_EQ(m_b.destroyed, 0);
    m_factory.ReleaseTl(c);
    EXPECT_EQ(m_b.destroyed, 1);
}

TEST_F(CTlFactoryTest, ReturnsNullWhenTheLibraryMakesNone) {
    m_a.createMode = scripted::CreateMode::kNull;
    const tracelog::LogRecorder log("vanto.base.Factory:warning");
    EXPECT_EQ(m_factory.CreateTl(gcstring("ScriptedA")), nullptr);
    EXPECT_EQ(
        log.CountText("The library '" + PathOf("scripted_a") + "' makes no transport layer 'Scripted/ScriptedA'."), 1u);
    EXPECT_EQ(DescriptionOfFailure([&] {
                  CDeviceInfo info;
                  info.SetDeviceClass("ScriptedA");
                  m_factory.CreateDevice(info);
              }),
              "The transport layer 'Scripted/ScriptedA' can't be created.");
}

TEST_F(CTlFactoryTest, LetsExceptionsOfCreatePass) {
    m_a.createMode = scripted::CreateMode::kThrow;
    EXPECT_THROW(m_factory.CreateTl(gcstring("ScriptedA")), std::runtime_error);
    m_a.createMode = scripted::CreateMode::kNormal;
    m_factory.ReleaseTl(m_factory.CreateTl(gcstring("ScriptedA")));
    EXPECT_EQ(m_a.created, 1);
}

TEST_F(CTlFactoryTest, ADeviceKeepsItsTransportLayer) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
    IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 0);
    tl->DestroyDevice(device);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, ADeviceGoneBeforeTheReleaseLeavesTheCountRight) {
    ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
    m_factory.CreateTl(gcstring("ScriptedA"));
    tl->DestroyDevice(tl->CreateDevice(gcstring("ScriptedA#0")));
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 0);
    m_factory.ReleaseTl(tl);
    EXPECT_EQ(m_a.destroyed, 1);
}

TEST_F(CTlFactoryTest, IgnoresTheReleaseOfNull) {
    m_factory.ReleaseTl(nullptr);
}

TEST_F(CTlFactoryTest, GivesATransportLayerOfOthersItsReferenceBack) {
    CreateFunction* const create = LoadScripted("scripted_a").Get<CreateFunction>("Create");
    DestroyFunction* const destroy = LoadScripted("scripted_a").Get<DestroyFunction>("Destroy");
    ITransportLayer* const tl = create(CTlInfo());
    IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
    tl->DestroyDevice(device);
    EXPECT_EQ(dynamic_cast<ITransportLayerPrivate*>(tl)->Release(), 0u);
    EXPECT_EQ(m_a.destroyed, 0);
    destroy(tl);
}

TEST_F(CTlFactoryTest, ManyThreadsMakeAndReleaseAtOnce) {
    const auto work = [&] {
        for (int i = 0; i < 200; ++i) {
            ITransportLayer* const tl = m_factory.CreateTl(gcstring("ScriptedA"));
            IVantoDevice* const device = tl->CreateDevice(gcstring("ScriptedA#0"));
            m_factory.ReleaseTl(tl);
            if (i % 2 == 0)
                m_factory.DestroyDevice(device);
            else
                tl->DestroyDevice(device);
            if (i % 16 == 0)
                m_factory.ReleaseUnusedTls();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work);
    }
    EXPECT_EQ(m_a.overlaps, 0);
    EXPECT_EQ(m_a.devices, 0);
    EXPECT_EQ(m_a.created, m_a.destroyed);
}

}  // namespace
