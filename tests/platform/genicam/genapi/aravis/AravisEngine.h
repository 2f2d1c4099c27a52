/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Debian's libaravis as an independent engine: node maps over memory of ours
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace aravistest {

/// The registers that both engines see.
class IMemory {
public:
    virtual void ReadMemory(std::uint64_t address, void* buffer, std::size_t size) = 0;
    virtual void WriteMemory(std::uint64_t address, const void* buffer, std::size_t size) = 0;

protected:
    ~IMemory() = default;
};

/// A node of the other engine.
using NodeHandle = void*;

/// What the other engine says about a node: a value, or nothing when it answers with an error.
class AravisEngine {
public:
    /// Loads a description. IsLoaded is false when the engine refuses it.
    AravisEngine(const std::string& xml, IMemory& memory);
    ~AravisEngine();
    AravisEngine(const AravisEngine&) = delete;
    AravisEngine& operator=(const AravisEngine&) = delete;

    bool IsLoaded() const noexcept { return m_genicam != nullptr; }
    NodeHandle Node(const char* name) const;

    static bool IsInteger(NodeHandle node);
    static bool IsFloat(NodeHandle node);
    static bool IsString(NodeHandle node);
    static bool IsBoolean(NodeHandle node);
    static bool IsEnumeration(NodeHandle node);

    static std::optional<std::int64_t> Integer(NodeHandle node);
    static std::optional<double> Float(NodeHandle node);
    static std::optional<bool> Boolean(NodeHandle node);
    static std::optional<std::string> Text(NodeHandle node);
    static std::optional<std::string> Symbolic(NodeHandle node);
    static std::optional<std::int64_t> IntegerMin(NodeHandle node);
    static std::optional<std::int64_t> IntegerMax(NodeHandle node);
    static std::optional<bool> IsAvailable(NodeHandle node);
    static std::optional<bool> IsImplemented(NodeHandle node);
    static bool SetInteger(NodeHandle node, std::int64_t value);
    /// The value of a feature as its command-line tool shows it.
    static std::optional<std::string> AsString(NodeHandle node);
    /// The names of the features of a category.
    static std::vector<const char*> Features(NodeHandle category);

    /// A formula by the engine's evaluator: the result in floating point or in integers.
    static std::optional<double> EvaluateFloat(const std::string& formula);
    static std::optional<std::int64_t> EvaluateInteger(const std::string& formula);

private:
    void* m_device = nullptr;
    void* m_genicam = nullptr;
};

}  // namespace aravistest
