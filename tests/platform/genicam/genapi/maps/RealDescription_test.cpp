/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions of real cameras, where there are any: everything of them is used once
 */

#include <filesystem>
#include <map>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

/// A device that answers every address: each byte follows from its address, and what is written stays.
class EndlessPort final : public IPort {
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        auto* bytes = static_cast<std::uint8_t*>(buffer);
        for (std::int64_t i = 0; i < length; ++i) {
            const auto written = m_written.find(address + i);
            const auto own = static_cast<std::uint8_t>((static_cast<std::uint64_t>(address + i) * 7) % 3);
            bytes[i] = written != m_written.end() ? written->second : own;
        }
    }
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override {
        const auto* bytes = static_cast<const std::uint8_t*>(buffer);
        for (std::int64_t i = 0; i < length; ++i)
            m_written[address + i] = bytes[i];
    }

private:
    std::map<std::int64_t, std::uint8_t> m_written;
};

class RealDescription : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        const std::filesystem::path file = std::filesystem::path(VANTO_TEST_DESCRIPTIONS) / GetParam();
        if (!std::filesystem::exists(file))
            GTEST_SKIP() << file << " is not there";
        map._LoadXMLFromFile(file.string().c_str());
        NodeList_t nodes;
        map._GetNodes(nodes);
        for (INode* node : nodes) {
            if (node->GetPrincipalInterfaceType() == intfIPort)
                map._Connect(&port, node->GetName());
        }
    }
    EndlessPort port;
    CNodeMapRef map;
};

// What a program that shows all features does with each of them; exceptions must be GenICam's.
void UseAll(const NodeList_t& nodes) {
    for (INode* node : nodes) {
        node->GetToolTip();
        node->GetVisibility();
        node->GetPollingTime();
        const EAccessMode mode = node->GetAccessMode();
        CValuePtr value = node;
        if (!value.IsValid() || !IsReadable(mode))
            continue;
        try {
            const gcstring text = value->ToString();
            if (IsWritable(mode) && node->GetPrincipalInterfaceType() != intfICommand)
                value->FromString(text, false);
            if (CIntegerPtr integer = node; integer.IsValid()) {
                integer->GetMin();
                integer->GetMax();
                integer->GetInc();
            }
        } catch (const GenericException& exception) {
            EXPECT_NE(std::string(exception.GetDescription()), "");
        }
    }
}

}  // namespace

TEST_P(RealDescription, AllFeaturesCanBeUsed) {
    NodeList_t nodes;
    map._GetNodes(nodes);
    EXPECT_GT(nodes.size(), 50U);
    UseAll(nodes);
    map._InvalidateNodes();
    UseAll(nodes);
}

TEST_P(RealDescription, AllFormulasParse) {
    gcstring_vector errors;
    map._GetNodeMap()->ParseSwissKnives(&errors);
    for (const gcstring& error : errors)
        ADD_FAILURE() << error;
}

TEST_P(RealDescription, AllFeaturesAreReachedFromTheRoot) {
    CCategoryPtr root = map._GetNode("Root");
    ASSERT_TRUE(root.IsValid());
    std::vector<ICategory*> categories{root};
    std::size_t features = 0;
    for (std::size_t next = 0; next < categories.size() && next < 1000; ++next) {
        FeatureList_t list;
        categories[next]->GetFeatures(list);
        for (IValue* feature : list) {
            ++features;
            if (auto* category = dynamic_cast<ICategory*>(feature))
                categories.push_back(category);
        }
    }
    EXPECT_GT(features, 5U);
}

INSTANTIATE_TEST_SUITE_P(Files, RealDescription,
                         testing::Values("aravis_fakecamera.xml", "aravis_testgenicam.xml", "firstlight_cred2.xml",
                                         "imperx_b1020.xml", "pco_1600.xml", "vieworks_vnp604.xml"),
                         [](const auto& test) { return test.param.substr(0, test.param.find('.')); });

}  // namespace genapitest
