/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Random register contents and random writes agree with a plain model
 */

#include <random>

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

/// One integer register of a generated description, and what the standard says about it.
struct ModelRegister {
    std::string name;
    int address;
    int length;
    bool isBigEndian;
    bool isSigned;
    int low;  // counted from the least significant bit
    int high;
    const char* caching;
};

constexpr int kMemory = 64;

class Model {
public:
    explicit Model(unsigned seed) : m_random(seed) {
        for (int i = 0; i < 40; ++i)
            m_registers.push_back(MakeRegister(i));
    }

    std::string Description() {
        std::string nodes;
        for (const ModelRegister& reg : m_registers)
            nodes += Node(reg);
        return nodes;
    }

    std::int64_t Value(const ModelRegister& reg, const std::vector<std::uint8_t>& memory) const {
        const unsigned count = static_cast<unsigned>(reg.high - reg.low + 1);
        const std::uint64_t mask = count == 64 ? ~0ULL : (1ULL << count) - 1;
        const std::uint64_t field = (Whole(reg, memory) >> reg.low) & mask;
        if (reg.isSigned && count < 64 && (field >> (count - 1)) != 0)
            return static_cast<std::int64_t>(field | ~mask);
        return static_cast<std::int64_t>(field);
    }

    void Store(const ModelRegister& reg, std::int64_t value, std::vector<std::uint8_t>& memory) const {
        const unsigned count = static_cast<unsigned>(reg.high - reg.low + 1);
        const std::uint64_t mask = (count == 64 ? ~0ULL : (1ULL << count) - 1) << reg.low;
        const std::uint64_t whole =
            (Whole(reg, memory) & ~mask) | ((static_cast<std::uint64_t>(value) << reg.low) & mask);
        for (int i = 0; i < reg.length; ++i) {
            const int byte = reg.isBigEndian ? reg.length - 1 - i : i;
            memory[static_cast<std::size_t>(reg.address + byte)] = static_cast<std::uint8_t>(whole >> (8 * i));
        }
    }

    std::int64_t RandomValue(const ModelRegister& reg) {
        const unsigned unused = 64 - static_cast<unsigned>(reg.high - reg.low + 1);
        const std::uint64_t bits = m_random();
        return reg.isSigned ? static_cast<std::int64_t>(bits << unused) >> unused
                            : static_cast<std::int64_t>(bits >> unused);
    }

    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    const std::vector<ModelRegister>& Registers() const { return m_registers; }

private:
    ModelRegister MakeRegister(int index) {
        static constexpr const char* kCachings[] = {"WriteThrough", "WriteAround", "NoCache"};
        ModelRegister reg{};
        reg.name = "R" + std::to_string(index);
        reg.length = 1 + Random(8);
        reg.address = Random(kMemory - reg.length);
        reg.isBigEndian = Random(2) != 0;
        reg.isSigned = Random(2) != 0;
        reg.low = Random(3) == 0 ? 0 : Random(8 * reg.length);
        reg.high = Random(3) == 0 ? 8 * reg.length - 1 : reg.low + Random(8 * reg.length - reg.low);
        reg.caching = kCachings[Random(3)];
        return reg;
    }

    std::string Node(const ModelRegister& reg) {
        const int total = 8 * reg.length;
        const int lsb = reg.isBigEndian ? total - 1 - reg.low : reg.low;
        const int msb = reg.isBigEndian ? total - 1 - reg.high : reg.high;
        return "<MaskedIntReg Name='" + reg.name + "'><Address>" + std::to_string(reg.address) + "</Address><Length>" +
               std::to_string(reg.length) + "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>" +
               reg.caching + "</Cachable><LSB>" + std::to_string(lsb) + "</LSB><MSB>" + std::to_string(msb) +
               "</MSB><Sign>" + (reg.isSigned ? "Signed" : "Unsigned") + "</Sign><Endianess>" +
               (reg.isBigEndian ? "BigEndian" : "LittleEndian") + "</Endianess></MaskedIntReg>" + "<Integer Name='I" +
               reg.name + "'><pValue>" + reg.name + "</pValue></Integer>" + "<IntSwissKnife Name='S" + reg.name +
               "'><pVariable Name='X'>I" + reg.name + "</pVariable><Formula>X ^ 0x55</Formula></IntSwissKnife>";
    }

    std::uint64_t Whole(const ModelRegister& reg, const std::vector<std::uint8_t>& memory) const {
        std::uint64_t value = 0;
        for (int i = 0; i < reg.length; ++i) {
            const int byte = reg.isBigEndian ? i : reg.length - 1 - i;
            value = (value << 8) | memory[static_cast<std::size_t>(reg.address + byte)];
        }
        return value;
    }

    std::mt19937_64 m_random;
    std::vector<ModelRegister> m_registers;
};

}  // namespace

class RandomRegisters : public NodeMapTest, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomRegisters, AgreeWithAPlainModel) {
    Model model(GetParam());
    Load(model.Description());
    std::vector<std::uint8_t> memory(kMemory);
    for (int i = 0; i < kMemory; ++i)
        memory[static_cast<std::size_t>(i)] = port.Memory()[static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(model.Random(256));
    map._InvalidateNodes();
    for (int step = 0; step < 600; ++step) {
        const ModelRegister& reg = model.Registers()[static_cast<std::size_t>(model.Random(40))];
        if (model.Random(3) == 0) {
            const std::int64_t value = model.RandomValue(reg);
            Integer((model.Random(2) == 0 ? "" : "I") + reg.name)->SetValue(value, model.Random(2) == 0 && value >= 0);
            model.Store(reg, value, memory);
        }
        ASSERT_TRUE(std::equal(memory.begin(), memory.end(), port.Memory().begin())) << step;
        const std::int64_t expected = model.Value(reg, memory);
        ASSERT_EQ(Integer(reg.name)->GetValue(), expected) << step << " " << reg.name;
        ASSERT_EQ(Integer("I" + reg.name)->GetValue(), expected) << step << " " << reg.name;
        ASSERT_EQ(Integer("S" + reg.name)->GetValue(), expected ^ 0x55) << step << " " << reg.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRegisters, testing::Range(0U, 40U));

// Values that move with a selector, computed through formulas, against the same arithmetic in the test.
class RandomSelection : public NodeMapTest, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomSelection, AgreesWithAPlainModel) {
    std::mt19937 random(GetParam());
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    Load(
        "<Integer Name='Sel'><Value>0</Value><Max>7</Max><pSelected>Gain</pSelected></Integer>"
        "<Integer Name='Mode'><Value>0</Value></Integer>"
        "<IntReg Name='Twin'><Address>0x110</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><Cachable>NoCache</Cachable></IntReg>"
        "<IntReg Name='Base'><Address>0</Address><Length>2</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "</IntReg><IntReg Name='Gain'><pAddress>Base</pAddress><pIndex Offset='4'>Sel</pIndex><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort><pInvalidator>Mode</pInvalidator>"
        "<PollingTime>10</PollingTime></IntReg>"
        "<IntConverter Name='Conv'><pVariable Name='S'>Sel</pVariable><FormulaTo>FROM - S</FormulaTo>"
        "<FormulaFrom>TO + S</FormulaFrom><pValue>Gain</pValue></IntConverter>"
        "<IntSwissKnife Name='Sum'><pVariable Name='G'>Conv</pVariable><pVariable Name='S'>Sel</pVariable>"
        "<Formula>G * 8 + S</Formula></IntSwissKnife>");
    port.PutLittle(0, 0x100, 2);
    int base = 0x100;
    int selector = 0;
    for (int step = 0; step < 2000; ++step) {
        switch (below(6)) {
            case 0:
                Integer("Sel")->SetValue(selector = below(8));
                break;
            case 1:
                Integer("Base")->SetValue(base = 0x100 + 16 * below(4));
                break;
            case 2: {
                const int value = below(1000) + 8;
                Integer("Conv")->SetValue(value);
                ASSERT_EQ(port.Little(base + 4 * selector, 4), static_cast<std::uint64_t>(value - selector));
                break;
            }
            case 3:
                Integer("Twin")->GetValue();
                break;
            case 4:
                // The device changes by itself, and the map is told in one of several ways.
                for (int address = 0x100; address < 0x160; address += 4)
                    port.PutLittle(address, random() % 1000, 4);
                switch (below(4)) {
                    case 0:
                        Integer("Mode")->SetValue(step);
                        break;
                    case 1:
                        map._Poll(10);
                        break;
                    default:
                        Node(below(2) == 0 ? "Gain" : "Conv")->InvalidateNode();
                        break;
                }
                break;
            default:
                break;
        }
        const auto gain = static_cast<std::int64_t>(port.Little(base + 4 * selector, 4));
        ASSERT_EQ(Integer("Gain")->GetValue(), gain) << step;
        ASSERT_EQ(Integer("Sum")->GetValue(), (gain + selector) * 8 + selector) << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSelection, testing::Range(0U, 10U));

}  // namespace genapitest
