/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Error nodes: the device's word on what was written to it
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

std::string Reg(const std::string& kind, const std::string& more) {
    return "<" + kind + " Name='Reg'><Address>0</Address><Length>8</Length><AccessMode>RW</AccessMode>" +
           "<pPort>Device</pPort>" + more + "</" + kind + ">" +
           "<IntReg Name='Error'><Address>0x20</Address><Length>4</Length><AccessMode>RO</AccessMode>"
           "<pPort>Device</pPort></IntReg>";
}

}  // namespace

class ErrorNode : public NodeMapTest {
protected:
    void SetUp() override { port.PutLittle(0x20, 3, 4); }
};

TEST_F(ErrorNode, OfARegisterBehindIsAsked) {
    Load("<Integer Name='A'><pValue>Reg</pValue></Integer>" + Reg("IntReg", "<pError>Error</pError>"));
    EXPECT_THROW(Integer("A")->SetValue(1), RuntimeException);
    EXPECT_EQ(port.Little(0, 8), 1U);
    EXPECT_NO_THROW(Integer("A")->SetValue(2, false));
    port.PutLittle(0x20, 0, 4);
    EXPECT_NO_THROW(Integer("A")->SetValue(3));
}

TEST_F(ErrorNode, OfAConverterBehindIsAsked) {
    Load(
        "<Float Name='A'><pValue>C</pValue></Float><Converter Name='C'><pError>Error</pError>"
        "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>Reg</pValue></Converter>" +
        Reg("FloatReg", ""));
    EXPECT_THROW(Float("A")->SetValue(1), RuntimeException);
}

TEST_F(ErrorNode, OfATextRegisterBehindIsAsked) {
    Load("<String Name='A'><pValue>Reg</pValue></String>" + Reg("StringReg", "<pError>Error</pError>"));
    EXPECT_THROW(String("A")->SetValue("x"), RuntimeException);
}

TEST_F(ErrorNode, OfAStructureCountsForItsEntries) {
    Load(
        "<StructReg Comment='S'><pError>Error</pError><Address>0</Address><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort><StructEntry Name='E'><Bit>1</Bit></StructEntry></StructReg>" +
        Reg("IntReg", ""));
    EXPECT_THROW(Integer("E")->SetValue(1), RuntimeException);
}

TEST_F(ErrorNode, IsAskedOnceForEachNode) {
    port.PutLittle(0x20, 0, 4);
    Load("<Integer Name='A'><pValue>Reg</pValue><pError>Error</pError></Integer>" + Reg("IntReg", ""));
    Integer("A")->SetValue(1);
    EXPECT_EQ(port.Reads(), 1);
}

TEST_F(ErrorNode, OfEveryKindOfFeatureIsAsked) {
    Load(
        "<Boolean Name='B'><pValue>Reg</pValue></Boolean>"
        "<Enumeration Name='E'><EnumEntry Name='X'><Value>1</Value></EnumEntry><pValue>Reg</pValue></Enumeration>"
        "<Command Name='C'><pValue>Reg</pValue><CommandValue>1</CommandValue></Command>" +
        Reg("IntReg", "<pError>Error</pError>"));
    EXPECT_THROW(Bool("B")->SetValue(true), RuntimeException);
    EXPECT_THROW(Enumeration("E")->FromString("X"), RuntimeException);
    EXPECT_THROW(Command("C")->Execute(), RuntimeException);
}

}  // namespace genapitest
