/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Both engines over one description and one memory: what they say about each node
 */

#include "Comparison.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "GenApi/Types.h"

namespace aravistest {

using namespace GenApi;

void SharedMemory::ReadMemory(std::uint64_t address, void* buffer, std::size_t size) {
    auto* bytes = static_cast<std::uint8_t*>(buffer);
    for (std::size_t i = 0; i < size; ++i) {
        const auto written = m_written.find(address + i);
        const std::uint64_t own = (address + i) * 2654435761U * (m_pattern + 1);
        bytes[i] = written != m_written.end() ? written->second
                   : m_pattern == 0           ? std::uint8_t{0}
                                              : static_cast<std::uint8_t>(own >> 13);
    }
}

void SharedMemory::WriteMemory(std::uint64_t address, const void* buffer, std::size_t size) {
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    for (std::size_t i = 0; i < size; ++i)
        m_written[address + i] = bytes[i];
}

void SharedMemory::Read(void* buffer, std::int64_t address, std::int64_t length) {
    ReadMemory(static_cast<std::uint64_t>(address), buffer, static_cast<std::size_t>(length));
}

void SharedMemory::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    WriteMemory(static_cast<std::uint64_t>(address), buffer, static_cast<std::size_t>(length));
}

namespace {

std::string NumberText(double value) {
    char text[40];
    // Both zeros are one number.
    std::snprintf(text, sizeof(text), "%.12g", value == 0.0 ? 0.0 : value);
    return text;
}

template <class Ask>
auto Try(Ask&& ask) -> std::optional<decltype(ask())> {
    try {
        return ask();
    } catch (const GenICam::GenericException&) {
        return std::nullopt;
    }
}

template <class T>
std::optional<std::string> Text(const std::optional<T>& value) {
    if (!value)
        return std::nullopt;
    if constexpr (std::is_same_v<T, double>)
        return NumberText(*value);
    else if constexpr (std::is_same_v<T, std::string>)
        return *value;
    else
        return std::to_string(*value);
}

std::optional<std::string> ValueOf(INode* node) {
    if (CEnumerationPtr enumeration = node; enumeration.IsValid())
        return enumeration->ToString().str();
    if (CBooleanPtr boolean = node; boolean.IsValid())
        return Text(std::optional(boolean->GetValue()));
    if (CIntegerPtr integer = node; integer.IsValid())
        return Text(std::optional(integer->GetValue()));
    if (CFloatPtr number = node; number.IsValid())
        return Text(std::optional(number->GetValue()));
    if (CStringPtr text = node; text.IsValid())
        return text->GetValue().str();
    return std::nullopt;
}

// The value, or the exception that there is instead of it.
std::optional<std::string> Value(INode* node, std::string& refusal) {
    try {
        return ValueOf(node);
    } catch (const GenICam::GenericException& exception) {
        refusal = exception.GetDescription();
    }
    return std::nullopt;
}

std::optional<std::string> Value(INode* ours, NodeHandle node) {
    switch (ours->GetPrincipalInterfaceType()) {
        case intfIEnumeration:
            return AravisEngine::Symbolic(node);
        case intfIBoolean:
            return Text(AravisEngine::Boolean(node));
        case intfIInteger:
            return Text(AravisEngine::Integer(node));
        case intfIFloat:
            return Text(AravisEngine::Float(node));
        case intfIString:
            return AravisEngine::Text(node);
        default:
            return std::nullopt;
    }
}

Answer Ours(INode* node) {
    Answer answer;
    const EAccessMode mode = node->GetAccessMode();
    answer.implemented = IsImplemented(mode);
    answer.available = IsAvailable(mode);
    if (IsReadable(mode))
        answer.value = Value(node, answer.refusal);
    else
        answer.refusal = "not readable";
    if (CIntegerPtr integer = node; integer.IsValid() && IsReadable(mode)) {
        answer.min = Text(Try([&] { return integer->GetMin(); }));
        answer.max = Text(Try([&] { return integer->GetMax(); }));
    }
    return answer;
}

Answer Theirs(INode* ours, NodeHandle node) {
    Answer answer;
    answer.implemented = AravisEngine::IsImplemented(node);
    answer.available = AravisEngine::IsAvailable(node);
    answer.value = Value(ours, node);
    if (ours->GetPrincipalInterfaceType() == intfIInteger) {
        answer.min = Text(AravisEngine::IntegerMin(node));
        answer.max = Text(AravisEngine::IntegerMax(node));
    }
    return answer;
}

bool IsSameKind(INode* ours, NodeHandle node) {
    switch (ours->GetPrincipalInterfaceType()) {
        case intfIEnumeration:
            return AravisEngine::IsEnumeration(node);
        case intfIBoolean:
            return AravisEngine::IsBoolean(node);
        case intfIInteger:
            return AravisEngine::IsInteger(node);
        case intfIFloat:
            return AravisEngine::IsFloat(node);
        case intfIString:
            return AravisEngine::IsString(node);
        default:
            return false;
    }
}

std::string KindOf(INode* node) {
    static const std::map<EInterfaceType, std::string> kNames = {{intfIEnumeration, "Enumeration"},
                                                                 {intfIBoolean, "Boolean"},
                                                                 {intfIInteger, "Integer"},
                                                                 {intfIFloat, "Float"},
                                                                 {intfIString, "String"}};
    const auto name = kNames.find(node->GetPrincipalInterfaceType());
    return name != kNames.end() ? name->second : "other";
}

// Ports of chunks and events have no registers; the other engine wants a buffer for them.
bool IsDevicePort(INode* node) {
    GenICam::gcstring value;
    GenICam::gcstring attribute;
    return node->GetPrincipalInterfaceType() == intfIPort && !node->GetProperty("ChunkID", value, attribute) &&
           !node->GetProperty("EventID", value, attribute);
}

bool NeedsWhatIsNotThere(INode* node) {
    NodeList_t children;
    node->GetChildren(children);
    return std::any_of(children.begin(), children.end(), [](INode* child) { return !IsReadable(child); });
}

template <class T>
std::string Shown(const std::optional<T>& value) {
    if constexpr (std::is_same_v<T, bool>)
        return value ? (*value ? "yes" : "no") : "error";
    else
        return value ? "'" + *value + "'" : "error";
}

class Collector {
public:
    Collector(INode* node, std::vector<Difference>& differences) : m_node(node), m_differences(differences) {}

    template <class T>
    void Check(const char* what, const std::optional<T>& ours, const std::optional<T>& theirs) {
        if (ours != theirs)
            m_differences.push_back({m_node->GetName().str(), KindOf(m_node), what, Shown(ours), Shown(theirs),
                                     NeedsWhatIsNotThere(m_node)});
    }

private:
    INode* m_node;
    std::vector<Difference>& m_differences;
};

}  // namespace

std::vector<Difference> CompareWrites(const std::string& xml, unsigned pattern) {
    std::vector<Difference> differences;
    SharedMemory ours(pattern);
    SharedMemory theirs(pattern);
    CNodeMapRef map;
    map._LoadXMLFromString(xml);
    map._Connect(&ours);
    const AravisEngine engine(xml, theirs);
    NodeList_t nodes;
    map._GetNodes(nodes);
    std::int64_t step = 0;
    for (INode* node : nodes) {
        CRegisterPtr bytes = node;
        CIntegerPtr integer = node;
        NodeHandle other = engine.Node(node->GetName());
        if (!bytes.IsValid() || !integer.IsValid() || other == nullptr)
            continue;
        const std::int64_t max = integer->GetMax();
        const std::int64_t value = ++step * 7919 % (max < 1000000 ? max + 1 : 1000000);
        Collector collector(node, differences);
        collector.Check("write", Try([&] {
                            integer->SetValue(value);
                            return true;
                        }),
                        std::optional(AravisEngine::SetInteger(other, value)));
    }
    if (ours.Written() != theirs.Written())
        differences.push_back({"", "memory", "bytes", "others", "others", false});
    return differences;
}

std::vector<Difference> Compare(const std::string& xml, unsigned pattern) {
    std::vector<Difference> differences;
    SharedMemory memory(pattern);
    CNodeMapRef map;
    map._LoadXMLFromString(xml);
    const AravisEngine engine(xml, memory);
    NodeList_t nodes;
    map._GetNodes(nodes);
    for (INode* node : nodes) {
        if (IsDevicePort(node))
            map._Connect(&memory, node->GetName());
    }
    for (INode* node : nodes) {
        if (KindOf(node) == "other")
            continue;
        Collector collector(node, differences);
        NodeHandle other = engine.Node(node->GetName());
        const bool isThere = other != nullptr && IsSameKind(node, other);
        collector.Check("node", std::optional(true), std::optional(isThere));
        if (!isThere)
            continue;
        const Answer ours = Ours(node);
        const Answer theirs = Theirs(node, other);
        collector.Check("implemented", ours.implemented, theirs.implemented);
        if (ours.implemented == true)
            collector.Check("available", ours.available, theirs.available);
        // What a node that is not there would say is no answer.
        if (ours.value)
            collector.Check("value", ours.value, theirs.value);
        else if (ours.available == true && theirs.value)
            collector.Check("value", std::optional(ours.refusal), theirs.value);
        if (ours.value && ours.min)
            collector.Check("min", ours.min, theirs.min);
        if (ours.value && ours.max)
            collector.Check("max", ours.max, theirs.max);
    }
    return differences;
}

}  // namespace aravistest
