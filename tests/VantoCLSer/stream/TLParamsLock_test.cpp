/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The camera's parameters that are locked during a grab
 */

#include "VantoCLSer/stream/TLParamsLock.h"

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::PropertyException;
using GenICam::RuntimeException;

constexpr const char* kLocked[] = {"ClTapGeometry", "PixelFormat",       "Width",
                                   "Height",        "BinningHorizontal", "BinningVertical"};

class TLParamsLock : public StreamTest {};

TEST_F(TLParamsLock, MakesSixFeaturesReadOnlyDuringAGrab) {
    m_grabber->PrepareGrab();
    EXPECT_EQ(m_device.Value("TLParamsLocked"), 1);
    for (const char* name : kLocked)
        EXPECT_EQ(m_device.AccessModeOf(name), GenApi::RO) << name;
    EXPECT_EQ(m_device.AccessModeOf("OffsetX"), GenApi::RW);
    EXPECT_THROW(m_device.Set("Width", 16), GenICam::AccessException);
    m_grabber->FinishGrab();
    EXPECT_EQ(m_device.Value("TLParamsLocked"), 0);
    for (const char* name : kLocked)
        EXPECT_EQ(m_device.AccessModeOf(name), GenApi::RW) << name;
    m_device.Set("Width", 16);
}

TEST_F(TLParamsLock, IsSetBeforeTheFeaturesAreLockedInTheirOrder) {
    std::vector<std::string> announced;
    std::vector<std::string> expected{"TLParamsLocked"};
    expected.insert(expected.end(), std::begin(kLocked), std::end(kLocked));
    for (const std::string& name : expected)
        GenApi::Register(m_device->_GetNode(name.c_str()),
                         [&announced](GenApi::INode* node) { announced.push_back(node->GetName().str()); });
    m_grabber->PrepareGrab();
    EXPECT_EQ(announced, expected);
    announced.clear();
    m_grabber->FinishGrab();
    EXPECT_EQ(announced, expected);
}

TEST_F(TLParamsLock, EndsWithFeaturesWritableWhateverTheyWere) {
    m_device->_GetNode("Width")->ImposeAccessMode(GenApi::RO);
    m_grabber->PrepareGrab();
    m_grabber->FinishGrab();
    EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RW);
}

TEST_F(TLParamsLock, StaysWhenTheGrabIsCancelled) {
    m_grabber->PrepareGrab();
    m_grabber->CancelGrab();
    EXPECT_EQ(m_device.Value("TLParamsLocked"), 1);
}

TEST_F(TLParamsLock, StaysWhenTheGrabberIsClosed) {
    m_grabber->PrepareGrab();
    m_grabber->Close();
    EXPECT_EQ(m_device.Value("TLParamsLocked"), 1);
    EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RO);
}

TEST_F(TLParamsLock, AFailureToUnlockPropagatesAfterTheGrabIsFinished) {
    m_grabber->PrepareGrab();
    m_device->_GetNode("TLParamsLocked")->ImposeAccessMode(GenApi::RO);
    EXPECT_THROW(m_grabber->FinishGrab(), GenICam::AccessException);
    m_device->_GetNode("TLParamsLocked")->ImposeAccessMode(GenApi::RW);
    m_grabber->PrepareGrab();  // the state is 1
}

TEST_F(TLParamsLock, AFailureToLockKeepsTheGrabUnprepared) {
    m_device->_GetNode("TLParamsLocked")->ImposeAccessMode(GenApi::RO);
    EXPECT_THROW(m_grabber->PrepareGrab(), GenICam::AccessException);
    EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RW);
    m_device->_GetNode("TLParamsLocked")->ImposeAccessMode(GenApi::RW);
    m_grabber->PrepareGrab();
}

TEST(TLParamsLockOfPoorCamera, NeedsANodeMap) {
    EXPECT_EQ(MessageOf<RuntimeException>([] { SetTLParamsLocked(nullptr, true); }), "Missing device nodemap.");
}

class TLParamsLockWithoutNode : public StreamTest {
protected:
    TLParamsLockWithoutNode() : StreamTest(CameraXml().Without("TLParamsLocked")) {}
};

TEST_F(TLParamsLockWithoutNode, IsRefused) {
    EXPECT_EQ(MessageOf<PropertyException>([&] { m_grabber->PrepareGrab(); }),
              "TLParamsLocked node missing from device nodemap.");
}

class TLParamsLockOfAnotherKind : public StreamTest {
protected:
    TLParamsLockOfAnotherKind()
        : StreamTest(
              CameraXml().With("TLParamsLocked", "<Boolean Name=\"TLParamsLocked\"><Value>0</Value></Boolean>")) {}
};

TEST_F(TLParamsLockOfAnotherKind, IsRefused) {
    EXPECT_EQ(MessageOf<PropertyException>([&] { m_grabber->PrepareGrab(); }),
              "TLParamsLocked node missing from device nodemap.");
}

class TLParamsLockOfLimitedNode : public StreamTest {
protected:
    TLParamsLockOfLimitedNode()
        : StreamTest(CameraXml().With("TLParamsLocked",
                                      "<Integer Name=\"TLParamsLocked\"><Value>0</Value><Max>0</Max>"
                                      "</Integer>")) {}
};

TEST_F(TLParamsLockOfLimitedNode, IsSetWithVerification) {
    EXPECT_THROW(m_grabber->PrepareGrab(), GenICam::OutOfRangeException);
}

class TLParamsLockOfSmallCamera : public StreamTest {
protected:
    TLParamsLockOfSmallCamera()
        : StreamTest(CameraXml().Without("ClTapGeometry").Without("BinningHorizontal").Without("BinningVertical")) {}
};

TEST_F(TLParamsLockOfSmallCamera, LocksWhatThereIs) {
    m_grabber->PrepareGrab();
    EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RO);
    m_grabber->FinishGrab();
    EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RW);
}

}  // namespace
