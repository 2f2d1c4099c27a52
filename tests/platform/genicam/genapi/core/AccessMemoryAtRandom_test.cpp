/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How much work one access is in descriptions that refer to each other at random
 */

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "AccessWork.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

/// Nodes that refer to earlier ones at random, and what the standard says of them.
class RandomNodes {
public:
    explicit RandomNodes(unsigned seed) : m_random(seed) {
        for (int i = 0; i < kRegisters; ++i)
            Add({Kind::Register});
        while (m_nodes.size() < 40)
            Add(Below(2) == 0
                    ? Node{Kind::Formula, Earlier(), Earlier()}
                    : Node{Kind::Integer, Earlier(), Below(2) == 0 ? Earlier() : -1, Below(2) == 0 ? Earlier() : -1});
    }
    static constexpr int kRegisters = 4;

    std::string Description() const {
        std::string xml;
        for (std::size_t i = 0; i < m_nodes.size(); ++i)
            xml += Xml(static_cast<int>(i));
        return xml;
    }
    std::size_t Size() const { return m_nodes.size(); }
    unsigned Register(int index) const { return m_nodes[static_cast<std::size_t>(index)].value; }
    bool IsReadable(int index) const { return m_nodes[static_cast<std::size_t>(index)].isReadable; }
    std::int64_t Value(int index) const { return m_nodes[static_cast<std::size_t>(index)].value; }

private:
    enum class Kind { Register, Integer, Formula };
    struct Node {
        Kind kind;
        int first = -1;
        int second = -1;
        int third = -1;
        bool isReadable = true;
        unsigned value = 0;
    };

    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    int Earlier() {
        const int size = static_cast<int>(m_nodes.size());
        return Below(2) == 0 ? size - 1 : Below(size);
    }
    bool Holds(int rule) const { return rule < 0 || (IsReadable(rule) && Value(rule) != 0); }

    void Add(Node node) {
        if (node.kind == Kind::Register)
            node.value = static_cast<unsigned>(Below(4));
        if (node.kind == Kind::Integer) {
            node.isReadable = IsReadable(node.first) && Holds(node.second) && Holds(node.third);
            node.value = static_cast<unsigned>(Value(node.first));
        }
        if (node.kind == Kind::Formula) {
            node.isReadable = IsReadable(node.first) && IsReadable(node.second);
            node.value = static_cast<unsigned>(Value(node.first) ^ Value(node.second));
        }
        m_nodes.push_back(node);
    }

    std::string Xml(int index) const {
        const Node& node = m_nodes[static_cast<std::size_t>(index)];
        const auto name = [](int number) { return "N" + std::to_string(number); };
        if (node.kind == Kind::Register)
            return Uncached(name(index), 4 * index);
        if (node.kind == Kind::Formula)
            return "<IntSwissKnife Name='" + name(index) + "'><pVariable Name='A'>" + name(node.first) +
                   "</pVariable><pVariable Name='B'>" + name(node.second) +
                   "</pVariable><Formula>A ^ B</Formula></IntSwissKnife>";
        std::string xml = "<Integer Name='" + name(index) + "'>";
        if (node.second >= 0)
            xml += "<pIsImplemented>" + name(node.second) + "</pIsImplemented>";
        if (node.third >= 0)
            xml += "<pIsAvailable>" + name(node.third) + "</pIsAvailable>";
        return xml + "<pValue>" + name(node.first) + "</pValue></Integer>";
    }

    std::mt19937 m_random;
    std::vector<Node> m_nodes;
};

}  // namespace

class RandomAccessWork : public AccessWork, public testing::WithParamInterface<unsigned> {
protected:
    void SetUp() override {
        Load(nodes.Description());
        for (int i = 0; i < RandomNodes::kRegisters; ++i)
            port.PutLittle(4 * i, nodes.Register(i), 4);
    }

    const RandomNodes nodes{GetParam()};
};

TEST_P(RandomAccessWork, ReadsEachRegisterAFewTimes) {
    for (int i = 0; i < static_cast<int>(nodes.Size()); ++i) {
        const CIntegerPtr node = Integer("N" + std::to_string(i));
        for (const bool ignoreCache : {false, true}) {
            const int reads = ReadsOf([&] {
                if (nodes.IsReadable(i))
                    EXPECT_EQ(node->GetValue(false, ignoreCache), nodes.Value(i)) << i;
                else
                    EXPECT_THROW(node->GetValue(false, ignoreCache), AccessException) << i;
            });
            EXPECT_LE(reads, 2 * RandomNodes::kRegisters) << i;
        }
        EXPECT_LE(ReadsOf([&] { node->GetMax(); }), 2 * RandomNodes::kRegisters) << i;
    }
}

// Whatever is asked and written, and whether it is refused or not.
TEST_P(RandomAccessWork, WritesAndQuestionsReadEachRegisterAFewTimes) {
    for (int i = 0; i < static_cast<int>(nodes.Size()); ++i) {
        const CIntegerPtr node = Integer("N" + std::to_string(i));
        const std::vector<std::function<void()>> questions = {[&] { node->SetValue(1); },
                                                              [&] { node->SetValue(2, false); },
                                                              [&] { node->FromString("3"); },
                                                              [&] { node->ToString(true, true); },
                                                              [&] { node->GetAccessMode(); },
                                                              [&] { node->IsValueCacheValid(); },
                                                              [&] { node->GetMin(); },
                                                              [&] { node->GetInc(); },
                                                              [&] { node->GetRepresentation(); },
                                                              [&] { node->GetNode()->InvalidateNode(); },
                                                              [&] { node->GetListOfValidValues(); }};
        for (const auto& question : questions) {
            const int reads = ReadsOf([&] {
                try {
                    question();
                } catch (const GenericException&) {  // refused
                }
            });
            EXPECT_LE(reads, 3 * RandomNodes::kRegisters) << i;
            EXPECT_LE(port.Writes(), 1) << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomAccessWork, testing::Range(0U, 60U));

}  // namespace genapitest
