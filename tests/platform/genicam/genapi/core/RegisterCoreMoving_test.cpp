/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Registers whose address or length comes from other nodes, on devices that change their minds
 */

#include <cstring>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

/// A device that gives another length each time it is asked. All else is 0.
class FickleLengthPort final : public IPort {
public:
    FickleLengthPort(std::initializer_list<std::uint8_t> lengths) : m_lengths(lengths) {}
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        std::memset(buffer, 0, static_cast<std::size_t>(length));
        if (address == 0)
            *static_cast<std::uint8_t*>(buffer) = m_lengths[m_next++ % m_lengths.size()];
    }
    void Write(const void* buffer, std::int64_t, std::int64_t length) override {
        const auto* bytes = static_cast<const std::uint8_t*>(buffer);
        written.assign(bytes, bytes + length);  // a sanitizer sees what is read beyond the end
    }

    std::vector<std::uint8_t> written;

private:
    std::vector<std::uint8_t> m_lengths;
    std::size_t m_next = 0;
};

std::string Register(const std::string& name, const std::string& elements, const std::string& kind = "IntReg") {
    return "<" + kind + " Name='" + name + "'>" + elements + "<AccessMode>RW</AccessMode><pPort>Device</pPort></" +
           kind + ">";
}

std::string FickleLength(const std::string& kind, const std::string& more = "") {
    return Register("R", "<Address>0x100</Address><pLength>Length</pLength>" + more, kind) +
           Register("Length", "<Address>0</Address><Length>1</Length><Cachable>NoCache</Cachable>");
}

}  // namespace

/// A node map over a device whose registers have no constant length.
class FickleLengths : public testing::Test {
protected:
    void Load(const std::string& nodes, IPort& port) {
        map._LoadXMLFromString(Describe(nodes));
        ASSERT_TRUE(map._Connect(&port, "Device"));
    }
    CNodeMapRef map{"Device"};
};

// One access asks for a length once: what it writes fits to what it read.
TEST_F(FickleLengths, AnIntegerIsWrittenWithOneLength) {
    FickleLengthPort port{4, 64, 4};
    Load(FickleLength("IntReg"), port);
    CIntegerPtr(map._GetNode("R"))->SetValue(1, false);
    EXPECT_EQ(port.written.size(), 4U);
    EXPECT_THROW(CIntegerPtr(map._GetNode("R"))->SetValue(1, false), OutOfRangeException);
}

TEST_F(FickleLengths, ABitFieldIsWrittenWithOneLength) {
    FickleLengthPort port{4, 64, 4};
    Load(FickleLength("MaskedIntReg", "<LSB>0</LSB><MSB>7</MSB>"), port);
    CIntegerPtr(map._GetNode("R"))->SetValue(1, false);
    EXPECT_EQ(port.written.size(), 4U);
    EXPECT_THROW(CIntegerPtr(map._GetNode("R"))->SetValue(1, false), OutOfRangeException);
}

TEST_F(FickleLengths, AFloatIsWrittenWithOneLength) {
    FickleLengthPort port{4, 64, 4};
    Load(FickleLength("FloatReg"), port);
    CFloatPtr(map._GetNode("R"))->SetValue(1, false);
    EXPECT_EQ(port.written.size(), 4U);
    EXPECT_THROW(CFloatPtr(map._GetNode("R"))->SetValue(1, false), OutOfRangeException);
}

TEST_F(FickleLengths, ATextIsWrittenWithOneLength) {
    FickleLengthPort port{64, 4, 64};
    Load(FickleLength("StringReg"), port);
    CStringPtr(map._GetNode("R"))->SetValue("text", false);
    EXPECT_EQ(port.written.size(), 64U);
    CStringPtr(map._GetNode("R"))->SetValue("text", false);
    EXPECT_EQ(port.written.size(), 4U);
}

TEST_F(FickleLengths, BytesAreCopiedWithOneLength) {
    FickleLengthPort port{64, 4};
    Load(FickleLength("Register"), port);
    std::uint8_t bytes[64] = {};
    CRegisterPtr(map._GetNode("R"))->Get(bytes, 64);
    EXPECT_THROW(CRegisterPtr(map._GetNode("R"))->Set(bytes, 64, false), OutOfRangeException);
    CRegisterPtr(map._GetNode("R"))->Set(bytes, 64, false);
    EXPECT_EQ(port.written.size(), 64U);
}

// --- What invalidates a register that moves ---

class MovingRegister : public NodeMapTest {
protected:
    /// Gain, one for each value of Sel, which Mode invalidates.
    void LoadGain(const std::string& more = "") {
        Load(
            "<Integer Name='Sel'><Value>0</Value><pSelected>Gain</pSelected></Integer>"
            "<Integer Name='Mode'><Value>0</Value></Integer><Integer Name='Gain'><pValue>Reg</pValue></Integer>" +
            Register("Reg", "<Address>0x100</Address><pIndex Offset='8'>Sel</pIndex><Length>4</Length>" + more) +
            Register("Same", "<Address>0x100</Address><Length>4</Length>"));
        for (const int sel : {0, 1, 0})
            Select(sel);
        EXPECT_EQ(Integer("Gain")->GetValue(), 0);
    }
    void Select(int sel) {
        Integer("Sel")->SetValue(sel);
        Integer("Gain")->GetValue();
    }
    /// Reads Gain at another place, changes the device everywhere, and leaves it to the test to say so.
    void ChangeTheDevice() {
        Select(1);
        port.PutLittle(0x100, 7, 4);
        port.PutLittle(0x108, 8, 4);
    }
    void ExpectNewValues() {
        EXPECT_EQ(Integer("Gain")->GetValue(), 8);
        Integer("Sel")->SetValue(0);
        EXPECT_EQ(Integer("Gain")->GetValue(), 7);
    }
};

TEST_F(MovingRegister, AnInvalidatorDropsTheValuesOfAllPlaces) {
    LoadGain("<pInvalidator>Mode</pInvalidator>");
    ChangeTheDevice();
    Integer("Mode")->SetValue(1);
    ExpectNewValues();
}

TEST_F(MovingRegister, InvalidateNodeDropsTheValuesOfAllPlaces) {
    LoadGain();
    ChangeTheDevice();
    Node("Gain")->InvalidateNode();
    ExpectNewValues();
}

TEST_F(MovingRegister, PollingDropsTheValuesOfAllPlaces) {
    LoadGain("<PollingTime>100</PollingTime>");
    ChangeTheDevice();
    map._Poll(100);
    ExpectNewValues();
}

TEST_F(MovingRegister, ASelectorThatInvalidatesDropsThePlaceThatIsEntered) {
    LoadGain("<pInvalidator>Sel</pInvalidator>");
    Select(1);
    EXPECT_EQ(Integer("Same")->GetValue(), 0);
    port.PutLittle(0x100, 7, 4);
    Integer("Sel")->SetValue(0);
    EXPECT_EQ(Integer("Gain")->GetValue(), 7);
}

TEST_F(MovingRegister, KeepsTheValuesOfPlacesThatNothingInvalidated) {
    LoadGain("<pInvalidator>Mode</pInvalidator>");
    Integer("Mode")->SetValue(1);
    Select(1);
    Select(0);
    port.accesses.clear();
    Select(1);
    Select(0);
    EXPECT_EQ(port.Reads(), 0);
}

// Another register may have read the same bytes since.
TEST_F(MovingRegister, TakesWhatANeighbourReadAfterwards) {
    Load("<Integer Name='Mode'><Value>0</Value></Integer><Integer Name='Base'><Value>0x100</Value></Integer>" +
         Register("Reg", "<pAddress>Base</pAddress><Length>4</Length><pInvalidator>Mode</pInvalidator>") +
         Register("Same", "<Address>0x100</Address><Length>4</Length>"));
    EXPECT_EQ(Integer("Reg")->GetValue(), 0);
    Integer("Mode")->SetValue(1);
    EXPECT_EQ(Integer("Same")->GetValue(), 0);
    port.accesses.clear();
    EXPECT_EQ(Integer("Reg")->GetValue(), 0);
    EXPECT_EQ(port.Reads(), 0);
}

// The address has a part that comes from a node, but the selector does not move it.
TEST_F(MovingRegister, ASelectorThatDoesNotMoveItDropsItsValue) {
    Load(
        "<Integer Name='Sel'><Value>0</Value><pSelected>Gain</pSelected></Integer>"
        "<Integer Name='Base'><Value>0x100</Value></Integer><Integer Name='Gain'><pValue>Reg</pValue></Integer>" +
        Register("Reg", "<pAddress>Base</pAddress><Length>4</Length>"));
    EXPECT_EQ(Integer("Gain")->GetValue(), 0);
    port.PutLittle(0x100, 7, 4);
    Integer("Sel")->SetValue(1);
    EXPECT_EQ(Integer("Gain")->GetValue(), 7);
}

}  // namespace genapitest
