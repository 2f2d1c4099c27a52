/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One node map used by several threads, and the debug mode that compares caches with the device
 */

#include <array>
#include <atomic>
#include <thread>

#include "Support.h"
#include "os/Environment.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Threads : public NodeMapTest {
protected:
    void LoadShared() {
        Load(
            "<Category Name='Root'><pFeature>A</pFeature></Category>"
            "<Integer Name='Sel'><Value>0</Value><Max>3</Max><pSelected>A</pSelected></Integer>"
            "<Integer Name='A'><pValue>R</pValue><pIsLocked>Lock</pIsLocked></Integer>"
            "<IntReg Name='R'><Address>0</Address><pIndex Offset='4'>Sel</pIndex><Length>4</Length>"
            "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg><Integer Name='Lock'><Value>0</Value></Integer>"
            "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><Formula>X + 1</Formula></IntSwissKnife>"
            "<Enumeration Name='E'><EnumEntry Name='X'><Value>0</Value></EnumEntry><EnumEntry Name='Y'>"
            "<Value>1</Value></EnumEntry><Value>0</Value></Enumeration><String Name='T'><Value>t</Value></String>");
    }
    void AskForNames() {
        NodeList_t nodes;
        FeatureList_t features;
        map._GetNodes(nodes);
        for (INode* node : nodes) {
            node->IsFeature();
            node->GetVisibility();
            CSelectorPtr(node)->GetSelectingFeatures(features);
        }
        Node("A")->GetChildren(nodes, ctDependingNodes);
        Category("Root")->GetFeatures(features);
        Integer("A")->GetUnit();
        Integer("A")->ToString();
    }
};

// Nodes are made when somebody asks for them: two threads that ask at once get one node.
TEST_F(Threads, MayAskForNodesThatNobodyAskedForYet) {
    constexpr int kThreads = 4;
    for (int round = 0; round < 20; ++round) {
        LoadShared();
        std::array<NodeList_t, kThreads> nodes;
        std::vector<std::jthread> threads;
        for (NodeList_t& found : nodes)
            threads.emplace_back([this, &found] {
                Integer("S")->GetValue();
                map._GetNodes(found);
                found.push_back(Node("EnumEntry_E_Y"));
            });
        threads.clear();
        for (const NodeList_t& found : nodes)
            ASSERT_EQ(found, nodes[0]);
        ASSERT_EQ(nodes[0].size(), map._GetNodeMap()->GetNumNodes() + 1);
    }
}

TEST_F(Threads, MayUseOneMap) {
    LoadShared();
    std::atomic<int> calls = 0;
    Register(Node("S"), [&calls](INode*) { ++calls; });
    Register(
        Node("S"), [&calls](INode*) { ++calls; }, cbPostOutsideLock);
    constexpr int kRounds = 150;
    const auto work = [this](int id) {
        CIntegerPtr a = Node("A");
        for (int i = 0; i < kRounds; ++i) {
            a->SetValue(id * kRounds + i);
            Integer("S")->GetValue();
            Integer("Sel")->SetValue(i % 4);
            Enumeration("E")->FromString(i % 2 == 0 ? "X" : "Y");
            String("T")->SetValue(std::to_string(i).c_str());
            Node("A")->GetAccessMode();
            AskForNames();
            if (i % 50 == 0)
                map._InvalidateNodes();
            const CallbackHandleType handle = Register(
                Node("A"), [](INode*) {}, cbPostOutsideLock);
            EXPECT_TRUE(Node("A")->DeregisterCallback(handle));
        }
    };
    std::vector<std::thread> threads;
    for (int id = 0; id < 4; ++id)
        threads.emplace_back(work, id);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(calls, 4 * kRounds * 2);
}

// A lock that the user takes makes several operations one.
TEST_F(Threads, TheLockMakesSeveralOperationsOne) {
    LoadShared();
    const auto count = [this] {
        for (int i = 0; i < 500; ++i) {
            const AutoLock lock(map._GetLock());
            Integer("A")->SetValue(Integer("A")->GetValue() + 1);
        }
    };
    std::thread first(count);
    std::thread second(count);
    first.join();
    second.join();
    EXPECT_EQ(Integer("A")->GetValue(), 1000);
}

class CacheCheck : public NodeMapTest {
protected:
    void SetUp() override { os::SetEnvironment("VANTO_GENAPI_CHECK_CACHE", "1"); }
    void TearDown() override { os::UnsetEnvironment("VANTO_GENAPI_CHECK_CACHE"); }
};

TEST_F(CacheCheck, TellsWhenTheDeviceChangedBehindACache) {
    Load(
        "<Integer Name='A'><pValue>R</pValue></Integer><IntReg Name='R'><Address>0</Address><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>");
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    EXPECT_EQ(Integer("A")->GetValue(), 0);
    port.PutLittle(0, 1, 4);
    EXPECT_THROW(Integer("A")->GetValue(), LogicalErrorException);
    EXPECT_EQ(Integer("A")->GetValue(false, true), 1);
    EXPECT_EQ(Integer("A")->GetValue(), 1);
}

TEST_F(CacheCheck, LetsUncachedRegistersChange) {
    Load(
        "<IntReg Name='R'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<Cachable>NoCache</Cachable></IntReg>");
    EXPECT_EQ(Integer("R")->GetValue(), 0);
    port.PutLittle(0, 1, 4);
    EXPECT_EQ(Integer("R")->GetValue(), 1);
}

TEST_F(CacheCheck, FindsNothingWhenAllIsWell) {
    Load(
        "<Integer Name='Sel'><Value>0</Value><pSelected>A</pSelected></Integer>"
        "<Integer Name='A'><pValue>R</pValue></Integer>"
        "<IntReg Name='R'><Address>0</Address><pIndex Offset='4'>Sel</pIndex><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>"
        "<MaskedIntReg Name='M'><Address>4</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<LSB>0</LSB><MSB>7</MSB></MaskedIntReg>"
        "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><pVariable Name='Y'>M</pVariable>"
        "<Formula>X + Y</Formula></IntSwissKnife>");
    for (int i = 0; i < 60; ++i) {
        Integer("Sel")->SetValue(i % 3);
        Integer("A")->SetValue(i * 300);
        Integer("M")->SetValue(i);
        EXPECT_EQ(Integer("S")->GetValue(), static_cast<std::int64_t>(port.Little(4 * (i % 3), 4) + port.Little(4, 1)));
    }
}

}  // namespace genapitest
