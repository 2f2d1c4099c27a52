/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Several node maps of one description
 */

#include <array>
#include <thread>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

const std::string kCamera = Describe(
    "<Integer Name='A'><pValue>R</pValue><pInvalidator>Own</pInvalidator></Integer>"
    "<IntReg Name='R'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>"
    "<Integer Name='Own'><Value>1</Value></Integer><String Name='T'><Value>text</Value></String>"
    "<IntSwissKnife Name='K'><pVariable Name='X'>A</pVariable><Formula>X * 2</Formula></IntSwissKnife>"
    "<Integer Name='Broken'><pValue>Nothing</pValue></Integer>");

/// One of several equal cameras.
struct Camera {
    explicit Camera(const char* name) : map(name) {
        map._LoadXMLFromString(kCamera.c_str());
        map._Connect(&port);
    }
    CIntegerPtr Integer(const char* name) const { return map._GetNode(name); }

    MemoryPort port;
    CNodeMapRef map;
};

}  // namespace

TEST(SharedDescription, EachMapHasItsOwnValues) {
    Camera one("one");
    Camera two("two");
    one.Integer("A")->SetValue(5);
    two.Integer("A")->SetValue(7);
    one.Integer("Own")->SetValue(2);
    CStringPtr(one.map._GetNode("T"))->SetValue("other");
    EXPECT_EQ(one.Integer("K")->GetValue(), 10);
    EXPECT_EQ(two.Integer("K")->GetValue(), 14);
    EXPECT_EQ(two.Integer("Own")->GetValue(), 1);
    EXPECT_EQ(CStringPtr(two.map._GetNode("T"))->GetValue(), "text");
    EXPECT_NE(one.map._GetNode("A"), two.map._GetNode("A"));
    EXPECT_EQ(two.map._GetNode("A")->GetDeviceName(), "two");
}

TEST(SharedDescription, CallbacksAndRestrictionsAreOfOneMap) {
    Camera one("one");
    Camera two("two");
    int calls = 0;
    Register(one.map._GetNode("K"), [&calls](INode*) { ++calls; });
    one.map._GetNode("A")->ImposeAccessMode(RO);
    EXPECT_EQ(calls, 1);
    two.Integer("A")->SetValue(3);
    EXPECT_EQ(calls, 1);
    EXPECT_THROW(one.Integer("A")->SetValue(3), AccessException);
}

TEST(SharedDescription, EachMapTellsItsWarningsWithItsOwnName) {
    const Camera one("one");
    const Camera two("two");
    ASSERT_EQ(two.map._GetWarnings().size(), 1U);
    EXPECT_EQ(one.map._GetWarnings()[0].File, "one");
    EXPECT_EQ(two.map._GetWarnings()[0].File, "two");
}

TEST(SharedDescription, AMapOutlivesTheOneThatReadTheDescription) {
    auto one = std::make_unique<Camera>("one");
    Camera two("two");
    one.reset();
    two.Integer("A")->SetValue(4);
    EXPECT_EQ(two.Integer("K")->GetValue(), 8);
    const Camera three("three");
    EXPECT_EQ(three.map._GetNodeMap()->GetNumNodes(), two.map._GetNodeMap()->GetNumNodes());
}

TEST(SharedDescription, TextsThatDifferAreTwoDescriptions) {
    CNodeMapRef one("Device");
    CNodeMapRef two("Device");
    const std::string filler(5000, 'x');
    const auto load = [&](CNodeMapRef& map, const std::string& value, const std::string& injected) {
        map._LoadXMLFromStringInject(
            Describe("<Integer Name='A'><ToolTip>" + filler + "</ToolTip><Value>" + value + "</Value></Integer>")
                .c_str(),
            injected.c_str());
        return CIntegerPtr(map._GetNode("A"))->GetValue();
    };
    EXPECT_EQ(load(one, "1", "<Group/>"), 1);
    EXPECT_EQ(load(two, "2", "<Group/>"), 2);
    EXPECT_EQ(load(two, "1", "<Integer Name='A'><Value>3</Value></Integer>"), 3);
    EXPECT_EQ(load(two, "1", "<Group/>"), 1);
}

TEST(SharedDescription, ThreadsMayLoadItAtOnce) {
    std::vector<std::jthread> threads;
    std::array<std::int64_t, 8> values{};
    for (std::size_t i = 0; i < values.size(); ++i)
        threads.emplace_back([&values, i] {
            Camera camera("Device");
            camera.Integer("A")->SetValue(static_cast<std::int64_t>(i));
            values[i] = camera.Integer("K")->GetValue();
        });
    threads.clear();
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(values[i], static_cast<std::int64_t>(2 * i));
}

}  // namespace genapitest
