/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Node callbacks: who is told, how often, in which state of the lock
 */

#include <atomic>
#include <future>
#include <thread>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class NodeCallback : public NodeMapTest {
protected:
    void LoadChain() {
        Load(
            "<IntReg Name='R'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
            "</IntReg><Integer Name='A'><pValue>R</pValue></Integer>"
            "<IntSwissKnife Name='S'><pVariable Name='X'>A</pVariable><pVariable Name='Y'>R</pVariable>"
            "<Formula>X + Y</Formula></IntSwissKnife>"
            "<Integer Name='B'><Value>0</Value><pMax>S</pMax></Integer><Integer "
            "Name='Other'><Value>0</Value></Integer>");
    }
    bool LockIsHeldByOthers() {
        return std::async(std::launch::async,
                          [this] {
                              if (!map._GetLock().TryLock())
                                  return true;
                              map._GetLock().Unlock();
                              return false;
                          })
            .get();
    }
};

TEST_F(NodeCallback, TellsEveryDependentNodeOnce) {
    LoadChain();
    CallCounter counter;
    for (const char* name : {"R", "A", "S", "B", "Other"})
        Register(Node(name), counter, &CallCounter::Called);
    Integer("A")->SetValue(3);
    EXPECT_EQ(counter.names.size(), 4U);
    for (const char* name : {"R", "A", "S", "B"})
        EXPECT_EQ(std::count(counter.names.begin(), counter.names.end(), name), 1) << name;
    EXPECT_EQ(counter.names.front(), "R");
}

TEST_F(NodeCallback, SeesTheNewValue) {
    LoadChain();
    EXPECT_EQ(Integer("S")->GetValue(), 0);
    std::int64_t seen = -1;
    Register(Node("S"), [&seen](INode* node) { seen = CIntegerPtr(node)->GetValue(); });
    Integer("A")->SetValue(4);
    EXPECT_EQ(seen, 8);
}

TEST_F(NodeCallback, RunsInsideOrOutsideTheLock) {
    LoadChain();
    std::vector<std::pair<std::string, bool>> calls;
    Register(
        Node("A"), [&](INode*) { calls.emplace_back("outside", LockIsHeldByOthers()); }, cbPostOutsideLock);
    Register(
        Node("A"), [&](INode*) { calls.emplace_back("inside", LockIsHeldByOthers()); }, cbPostInsideLock);
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, (std::vector<std::pair<std::string, bool>>{{"inside", true}, {"outside", false}}));
}

TEST_F(NodeCallback, OutsideCallbacksOfANestedChangeWaitForTheOutermost) {
    LoadChain();
    std::vector<std::string> calls;
    Register(Node("A"), [&](INode*) {
        calls.emplace_back("inside A");
        Integer("Other")->SetValue(5);
        calls.emplace_back("set Other");
    });
    Register(
        Node("Other"), [&](INode*) { calls.emplace_back("outside Other"); }, cbPostOutsideLock);
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, (std::vector<std::string>{"inside A", "set Other", "outside Other"}));
}

TEST_F(NodeCallback, MayRemoveItself) {
    LoadChain();
    int calls = 0;
    CallbackHandleType handle = 0;
    handle = Register(Node("A"), [&](INode* node) {
        ++calls;
        EXPECT_TRUE(node->DeregisterCallback(handle));
    });
    Integer("A")->SetValue(1);
    Integer("A")->SetValue(2);
    EXPECT_EQ(calls, 1);
}

TEST_F(NodeCallback, MayRemoveAnotherThatWouldRunNext) {
    LoadChain();
    int calls = 0;
    CallbackHandleType second = 0;
    Register(Node("A"), [&](INode* node) { node->DeregisterCallback(second); });
    second = Register(Node("A"), [&](INode*) { ++calls; });
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, 0);
}

TEST_F(NodeCallback, MayRegisterAnother) {
    LoadChain();
    int calls = 0;
    bool done = false;
    Register(Node("A"), [&](INode* node) {
        if (!done)
            Register(node, [&calls](INode*) { ++calls; });
        done = true;
    });
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, 0);
    Integer("A")->SetValue(2);
    EXPECT_EQ(calls, 1);
}

TEST_F(NodeCallback, AnExceptionReachesTheWriterAfterAllHaveRun) {
    LoadChain();
    int calls = 0;
    Register(Node("A"), [](INode*) { throw RUNTIME_EXCEPTION("from a callback"); });
    Register(Node("A"), [&calls](INode*) { ++calls; });
    Register(
        Node("A"), [&calls](INode*) { ++calls; }, cbPostOutsideLock);
    EXPECT_THROW(Integer("A")->SetValue(1), RuntimeException);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Integer("A")->GetValue(), 1);
    EXPECT_FALSE(LockIsHeldByOthers());
}

TEST_F(NodeCallback, AnExceptionOfAnyTypeLeavesTheMapUsable) {
    LoadChain();
    Register(Node("A"), [](INode*) { throw 7; });
    EXPECT_THROW(Integer("A")->SetValue(1), int);
    EXPECT_EQ(Integer("R")->GetValue(), 1);
}

TEST_F(NodeCallback, ACircleOfCallbacksEnds) {
    LoadChain();
    Register(Node("A"), [this](INode*) { Integer("Other")->SetValue(1); });
    Register(Node("Other"), [this](INode*) { Integer("A")->SetValue(1); });
    EXPECT_THROW(Integer("A")->SetValue(1), LogicalErrorException);
    EXPECT_FALSE(LockIsHeldByOthers());
}

TEST_F(NodeCallback, AnnouncesImposedModes) {
    LoadChain();
    CallCounter counter;
    Register(Node("A"), counter, &CallCounter::Called);
    Node("R")->ImposeAccessMode(RO);
    EXPECT_EQ(counter.calls, 1);
}

TEST_F(NodeCallback, AnnouncesRegistersThatShareBytes) {
    Load(
        "<MaskedIntReg Name='Low'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><Bit>0</Bit></MaskedIntReg>"
        "<IntReg Name='Word'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</IntReg><Integer Name='A'><pValue>Word</pValue></Integer>"
        "<IntReg Name='Byte'><Address>3</Address><Length>1</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</IntReg>");
    CallCounter counter;
    for (const char* name : {"Low", "Word", "A", "Byte"})
        Register(Node(name), counter, &CallCounter::Called);
    Integer("Low")->SetValue(1);
    EXPECT_EQ(counter.names.size(), 4U);
}

TEST_F(NodeCallback, MayRunBeforeTheChange) {
    LoadChain();
    std::vector<std::tuple<std::string, std::int64_t, bool>> calls;
    const auto note = [&](const std::string& what) {
        return
            [this, &calls, what](INode*) { calls.emplace_back(what, Integer("S")->GetValue(), LockIsHeldByOthers()); };
    };
    Register(Node("S"), note("before inside"), cbPreInsideLock);
    Register(Node("S"), note("before outside"), cbPreOutsideLock);
    Register(Node("S"), note("after inside"), cbPostInsideLock);
    Register(Node("S"), note("after outside"), cbPostOutsideLock);
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, (std::vector<std::tuple<std::string, std::int64_t, bool>>{{"before outside", 0, false},
                                                                               {"before inside", 0, true},
                                                                               {"after inside", 2, true},
                                                                               {"after outside", 2, false}}));
}

TEST_F(NodeCallback, AnExceptionBeforeTheChangeKeepsItFromBeingMade) {
    for (const ECallbackType type : {cbPreInsideLock, cbPreOutsideLock}) {
        LoadChain();
        CallCounter counter;
        Register(
            Node("A"), [](INode*) { throw RUNTIME_EXCEPTION("no"); }, type);
        Register(Node("A"), counter, &CallCounter::Called);
        EXPECT_THROW(Integer("A")->SetValue(1), RuntimeException);
        EXPECT_EQ(port.Writes(), 0);
        EXPECT_EQ(counter.calls, 0);
        EXPECT_FALSE(LockIsHeldByOthers());
    }
}

TEST_F(NodeCallback, ACircleOfCallbacksBeforeTheChangeEnds) {
    for (const ECallbackType type : {cbPreInsideLock, cbPreOutsideLock}) {
        LoadChain();
        Register(
            Node("A"), [this](INode*) { Integer("A")->SetValue(1); }, type);
        EXPECT_THROW(Integer("A")->SetValue(1), LogicalErrorException);
        EXPECT_EQ(port.Writes(), 0);
    }
}

TEST_F(NodeCallback, InvalidateNodesTellsAll) {
    LoadChain();
    CallCounter counter;
    Register(Node("A"), counter, &CallCounter::Called);
    Register(Node("Other"), counter, &CallCounter::Called);
    map._InvalidateNodes();
    EXPECT_EQ(counter.calls, 2);
}

TEST_F(NodeCallback, PollingTellsTheNode) {
    Load(
        "<IntReg Name='R'><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
        "<PollingTime>50</PollingTime></IntReg>");
    CallCounter counter;
    Register(Node("R"), counter, &CallCounter::Called);
    map._Poll(49);
    EXPECT_EQ(counter.calls, 0);
    map._Poll(1);
    EXPECT_EQ(counter.calls, 1);
}

TEST_F(NodeCallback, AFailedWriteIsAnnounced) {
    LoadChain();
    CallCounter counter;
    Register(Node("A"), counter, &CallCounter::Called);
    port.failsNext = true;
    EXPECT_THROW(Integer("A")->SetValue(1), TimeoutException);
    EXPECT_EQ(counter.calls, 1);
}

TEST_F(NodeCallback, ARefusedWriteIsNot) {
    LoadChain();
    CallCounter counter;
    Register(Node("A"), counter, &CallCounter::Called);
    EXPECT_THROW(Integer("A")->SetValue(-1), OutOfRangeException);
    EXPECT_EQ(counter.calls, 0);
}

TEST_F(NodeCallback, IsDestroyedWithTheMapOrWhenRemoved) {
    class Watched final : public CNodeCallback {
    public:
        Watched(INode* node, int& destroyed) : CNodeCallback(node, cbPostInsideLock), m_destroyed(destroyed) {}
        void operator()(ECallbackType) const override {}
        void Destroy() override {
            ++m_destroyed;
            delete this;
        }

    private:
        int& m_destroyed;
    };
    LoadChain();
    int destroyed = 0;
    const CallbackHandleType handle = Node("A")->RegisterCallback(new Watched(Node("A"), destroyed));
    Node("A")->RegisterCallback(new Watched(Node("A"), destroyed));
    EXPECT_TRUE(Deregister(handle));
    EXPECT_EQ(destroyed, 1);
    map._Destroy();
    EXPECT_EQ(destroyed, 2);
}

TEST_F(NodeCallback, NullIsRefused) {
    LoadChain();
    EXPECT_THROW(Node("A")->RegisterCallback(nullptr), InvalidArgumentException);
    EXPECT_FALSE(Node("A")->DeregisterCallback(0));
    EXPECT_FALSE(Deregister(0));
}

TEST_F(NodeCallback, AHandleOfAnotherNodeIsNotKnown) {
    LoadChain();
    int calls = 0;
    const CallbackHandleType handle = Register(Node("A"), [&calls](INode*) { ++calls; });
    EXPECT_FALSE(Node("B")->DeregisterCallback(handle));
    Integer("A")->SetValue(1);
    EXPECT_EQ(calls, 1);
}

// When DeregisterCallback returns, the callback does not run any more in another thread.
TEST_F(NodeCallback, RemovalWaitsForARunningCallback) {
    LoadChain();
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> ended = false;
    const CallbackHandleType handle = Register(
        Node("A"),
        [&](INode*) {
            entered.set_value();
            release.get_future().wait();
            ended = true;
        },
        cbPostOutsideLock);
    std::thread writer([this] { Integer("A")->SetValue(1); });
    entered.get_future().wait();
    auto removal = std::async(std::launch::async, [&] {
        const bool removed = Node("A")->DeregisterCallback(handle);
        return removed && ended;
    });
    release.set_value();
    EXPECT_TRUE(removal.get());
    writer.join();
}

TEST_F(NodeCallback, RunsOnceBeforeAnEnumerationIsSetByName) {
    Load("<Enumeration Name='E'><EnumEntry Name='A'><Value>1</Value></EnumEntry><Value>0</Value></Enumeration>");
    int inside = 0;
    int outside = 0;
    Register(
        Node("E"), [&inside](INode*) { ++inside; }, cbPreInsideLock);
    Register(
        Node("E"), [&outside](INode*) { ++outside; }, cbPreOutsideLock);
    Enumeration("E")->FromString("A");
    EXPECT_EQ(inside, 1);
    EXPECT_EQ(outside, 1);
}

}  // namespace genapitest
