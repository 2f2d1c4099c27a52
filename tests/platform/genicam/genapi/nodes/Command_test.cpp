/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Commands
 */

#include "NodeTexts.h"
#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class CommandNode : public NodeMapTest {};

TEST_F(CommandNode, WritesItsValue) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 7U);
    EXPECT_FALSE(Command("C")->IsDone());
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, ThatCannotBeReadBackIsDoneAtOnce) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R", "WO"));
    Command("C")->Execute();
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(port.Reads(), 0);
}

TEST_F(CommandNode, RunsAlthoughTheDeviceReportsAnError) {
    Load("<Command Name='C'><pError>E</pError><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R") +
         "<Integer Name='E'><Value>3</Value></Integer>");
    CallCounter counter;
    Register(Node("C"), counter, &CallCounter::Called);
    EXPECT_THROW(Command("C")->Execute(), RuntimeException);
    EXPECT_EQ(counter.calls, 1);
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 2);
}

TEST_F(CommandNode, TakesItsValueFromANode) {
    Load("<Command Name='C'><pValue>R</pValue><pCommandValue>V</pCommandValue></Command>" + Reg("R") +
         "<Integer Name='V'><Value>9</Value></Integer>");
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 9U);
}

TEST_F(CommandNode, OfAConstantIsDoneAtOnce) {
    Load("<Command Name='C'><Value>0</Value><CommandValue>1</CommandValue></Command>");
    Command("C")->Execute();
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, CannotBeExecutedWhenItsRegisterIsReadOnly) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R", "RO"));
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_THROW(Command("C")->Execute(), AccessException);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, HasTheModeOfTheRegisterBehind) {
    const std::string command = "<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue>";
    Load(command + "</Command>" + Reg("R"));
    EXPECT_EQ(Mode("C"), RW);
    Load(command + "</Command>" + Reg("R", "WO"));
    EXPECT_EQ(Mode("C"), WO);
    Load(command + "<pIsLocked>L</pIsLocked></Command><Integer Name='L'><Value>1</Value></Integer>" + Reg("R"));
    EXPECT_EQ(Mode("C"), RO);
    EXPECT_THROW(Command("C")->Execute(), AccessException);
    EXPECT_TRUE(Command("C")->IsDone());
}

// 0 is what a register shows that has nothing to do.
TEST_F(CommandNode, OfValueZeroIsDoneAtOnce) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>0</CommandValue></Command>" + Reg("R"));
    port.PutLittle(0, 5, 4);
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 0U);
    EXPECT_TRUE(Command("C")->IsDone());
}

TEST_F(CommandNode, AnnouncesItselfWhenItStartsAndWhenItIsDone) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    CallCounter counter;
    Register(Node("C"), counter, &CallCounter::Called);
    Command("C")->Execute();
    EXPECT_EQ(counter.calls, 1);
    EXPECT_FALSE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 1);
    port.PutLittle(0, 0, 4);
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_TRUE(Command("C")->IsDone());
    EXPECT_EQ(counter.calls, 2);
}

TEST_F(CommandNode, HasTexts) {
    Load("<Command Name='C'><pValue>R</pValue><CommandValue>7</CommandValue></Command>" + Reg("R"));
    EXPECT_EQ(Command("C")->ToString(), "1");
    Command("C")->FromString("0");
    EXPECT_EQ(port.Writes(), 0);
    Command("C")->FromString("1");
    EXPECT_EQ(Command("C")->ToString(), "0");
    EXPECT_THROW(Command("C")->FromString("go"), InvalidArgumentException);
}

TEST_F(CommandNode, WithoutACommandValueWritesOne) {
    Load("<Command Name='C'><pValue>R</pValue></Command>" + Reg("R"));
    Command("C")->Execute();
    EXPECT_EQ(port.Little(0, 4), 1U);
    EXPECT_FALSE(Command("C")->IsDone());
    EXPECT_EQ(Warnings(wkBadValue), 1);
}

}  // namespace genapitest
