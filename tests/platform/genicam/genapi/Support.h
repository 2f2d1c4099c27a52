/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Register space in memory, and node maps over it
 */
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace genapitest {

/// A device whose registers are bytes in memory. Unwritten bytes are 0.
class MemoryPort final : public GenApi::IPort {
public:
    struct Access {
        bool isWrite;
        std::int64_t address;
        std::int64_t length;
        friend bool operator==(const Access&, const Access&) = default;
    };

    explicit MemoryPort(std::size_t size = 0x10000) : m_memory(size) {}

    GenApi::EAccessMode GetAccessMode() const override { return mode; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

    void Put(std::int64_t address, std::initializer_list<unsigned> bytes);
    void PutLittle(std::int64_t address, std::uint64_t value, int length);
    void PutBig(std::int64_t address, std::uint64_t value, int length);
    void PutText(std::int64_t address, const std::string& text);
    std::uint64_t Little(std::int64_t address, int length) const;
    std::uint64_t Big(std::int64_t address, int length) const;
    std::vector<std::uint8_t>& Memory() { return m_memory; }
    int Reads() const;
    int Writes() const;

    GenApi::EAccessMode mode = GenApi::RW;
    bool failsNext = false;  ///< the next access throws TimeoutException
    std::vector<Access> accesses;

private:
    void Check(std::int64_t address, std::int64_t length);

    std::vector<std::uint8_t> m_memory;
};

/// A whole description around some nodes: with a port "Device" unless \a hasPort is false.
std::string Describe(const std::string& nodes, bool hasPort = true);

/// A node map over memory.
class NodeMapTest : public testing::Test {
protected:
    void Load(const std::string& nodes);
    GenApi::INode* Node(const std::string& name);
    GenApi::CIntegerPtr Integer(const std::string& name) { return Node(name); }
    GenApi::CFloatPtr Float(const std::string& name) { return Node(name); }
    GenApi::CEnumerationPtr Enumeration(const std::string& name) { return Node(name); }
    GenApi::CBooleanPtr Bool(const std::string& name) { return Node(name); }
    GenApi::CCommandPtr Command(const std::string& name) { return Node(name); }
    GenApi::CStringPtr String(const std::string& name) { return Node(name); }
    GenApi::CRegisterPtr Bytes(const std::string& name) { return Node(name); }
    GenApi::CCategoryPtr Category(const std::string& name) { return Node(name); }
    GenApi::EAccessMode Mode(const std::string& name) { return Node(name)->GetAccessMode(); }
    /// Value of an IntSwissKnife with this formula.
    std::int64_t Evaluate(const std::string& formula);
    /// Value of a SwissKnife with this formula.
    double EvaluateFloat(const std::string& formula);
    /// Number of warnings of a kind.
    int Warnings(GenApi::EWarningKind kind) const;

    MemoryPort port;
    GenApi::CNodeMapRef map{"Device"};
};

/// Counts what a node announces.
class CallCounter {
public:
    void Called(GenApi::INode* node) {
        ++calls;
        names.push_back(node->GetName().str());
    }
    int calls = 0;
    std::vector<std::string> names;
};

/// The text with & < > as an XML text has them.
std::string Escaped(const std::string& text);

}  // namespace genapitest
