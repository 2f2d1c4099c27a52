/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Feeds descriptions to the loader and uses every node of those that load
 */

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "GenApi/GenApi.h"

using namespace GenApi;

namespace {

/// A device whose bytes are those of the description itself, others each time it is asked.
class FuzzPort final : public IPort {
public:
    FuzzPort(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        auto* bytes = static_cast<std::uint8_t*>(buffer);
        const std::uint64_t start = static_cast<std::uint64_t>(address) + 7 * (m_reads++ / 4);
        for (std::int64_t i = 0; i < length; ++i)
            bytes[i] = m_data[(start + static_cast<std::uint64_t>(i) % 64) % m_size];
    }
    void Write(const void* buffer, std::int64_t, std::int64_t length) override {
        m_last = static_cast<const std::uint8_t*>(buffer)[length - 1];
        ++m_writes;
    }
    std::uint64_t Reads() const { return m_reads; }
    std::uint64_t Writes() const { return m_writes; }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::uint64_t m_reads = 0;
    std::uint64_t m_writes = 0;
    volatile std::uint8_t m_last = 0;
};

void UseValue(INode* node) {
    CValuePtr value = node;
    if (value.IsValid() && IsReadable(node->GetAccessMode()))
        value->FromString(value->ToString(true), true);
}

void UseInteger(INode* node) {
    CIntegerPtr integer = node;
    if (!integer.IsValid())
        return;
    integer->GetMin();
    integer->GetMax();
    integer->GetInc();
    integer->GetListOfValidValues();
    integer->GetUnit();
    integer->GetRepresentation();
    integer->SetValue(integer->GetValue(false, true), false);
}

void UseFloat(INode* node) {
    CFloatPtr number = node;
    if (!number.IsValid())
        return;
    number->GetMin();
    number->GetMax();
    number->GetIncMode();
    number->GetListOfValidValues();
    number->GetUnit();
    number->SetValue(number->GetValue(false, true), false);
}

void UseOthers(INode* node) {
    if (CEnumerationPtr enumeration = node; enumeration.IsValid()) {
        StringList_t symbolics;
        enumeration->GetSymbolics(symbolics);
        enumeration->GetCurrentEntry();
        enumeration->SetIntValue(enumeration->GetIntValue(), false);
    }
    if (CCommandPtr command = node; command.IsValid()) {
        command->Execute();
        command->IsDone();
    }
    if (CRegisterPtr bytes = node; bytes.IsValid()) {
        std::uint8_t byte = 0;
        bytes->GetAddress();
        bytes->Get(&byte, 1);
    }
    if (CCategoryPtr category = node; category.IsValid()) {
        FeatureList_t features;
        category->GetFeatures(features);
    }
}

/**
 * The most that the port may be asked for by \a use.
 *
 * An access asks no node twice: a register is read once for those who take what is cached and once for those who pass
 * the caches over, and a text or the bytes of a register once more. A write within the access begins this anew. A value
 * is written to a node 16 times at most, however many copies lead there.
 */
class Work {
public:
    Work(const INode& node, const FuzzPort& port)
        : m_port(port), m_reads(port.Reads()), m_writes(port.Writes()), m_nodes(node.GetNodeMap()->GetNumNodes() + 2) {}
    bool IsBounded() const {
        constexpr std::uint64_t kOperations = 8;  // of each use
        const std::uint64_t writes = m_port.Writes() - m_writes;
        const std::uint64_t reads = m_port.Reads() - m_reads;
        return writes <= kOperations * 16 * m_nodes && reads <= (kOperations + writes) * 2 * m_nodes;
    }

private:
    const FuzzPort& m_port;
    const std::uint64_t m_reads;
    const std::uint64_t m_writes;
    const std::uint64_t m_nodes;
};

// Every exception that is not GenICam's ends the run, and so does work that grows faster than the description.
template <class Use>
void Guarded(Use&& use, INode* node, const FuzzPort& port) {
    const Work work(*node, port);
    try {
        use(node);
    } catch (const GenICam::GenericException& exception) {
        if (std::strlen(exception.GetDescription()) == 0)
            __builtin_trap();
    }
    if (!work.IsBounded())
        __builtin_trap();
}

void UseMap(CNodeMapRef& map, FuzzPort& port) {
    NodeList_t nodes;
    map._GetNodes(nodes);
    // A large map would only repeat itself.
    if (nodes.size() > 300)
        nodes.resize(300);
    for (INode* node : nodes) {
        if (node->GetPrincipalInterfaceType() == intfIPort)
            map._Connect(&port, node->GetName());
    }
    for (INode* node : nodes) {
        GenICam::gcstring_vector names;
        NodeList_t others;
        node->GetPropertyNames(names);
        node->GetChildren(others, ctTerminalNodes);
        node->GetCachingMode();
        node->GetPollingTime();
        node->GetVisibility();
        Guarded(UseValue, node, port);
        Guarded(UseInteger, node, port);
        Guarded(UseFloat, node, port);
        Guarded(UseOthers, node, port);
        Guarded([](INode* each) { each->InvalidateNode(); }, node, port);
    }
    map._Poll(100);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    // What follows the mark is injected.
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t mark = text.find("<?inject?>");
    CNodeMapRef map;
    try {
        if (mark == std::string_view::npos)
            map._LoadXMLFromString(GenICam::gcstring(text));
        else
            map._LoadXMLFromStringInject(GenICam::gcstring(text.substr(0, mark)),
                                         GenICam::gcstring(text.substr(mark + 10)));
    } catch (const GenICam::RuntimeException&) {
        return 0;
    }
    FuzzPort port(data, size);
    UseMap(map, port);
    return 0;
}
