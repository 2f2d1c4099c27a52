/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What nodes with an integer have in common: IInteger, ranges, texts
 */
#pragma once

#include "GenApi/IInteger.h"
#include "nodes/SourcedNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Range and appearance of an integer node, as its description gives them. Lies in the map's arena.
struct IntegerLimits {
    Operand<std::int64_t> min;
    Operand<std::int64_t> max;
    Operand<std::int64_t> inc;
    std::span<std::int64_t> validValues;
    std::int64_t imposedMin = INT64_MIN;
    std::int64_t imposedMax = INT64_MAX;
};

/// Base of all nodes with IInteger.
class CIntegerNode : public CValueNode<IInteger, intfIInteger> {
public:
    using CValueNode::CValueNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    // IInteger
    void SetValue(std::int64_t value, bool verify = true) override;
    std::int64_t GetValue(bool verify = false, bool ignoreCache = false) override;
    std::int64_t GetMin() override;
    std::int64_t GetMax() override;
    EIncMode GetIncMode() override;
    std::int64_t GetInc() override;
    int64_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    GenICam::gcstring GetUnit() override;
    void ImposeMin(std::int64_t value) override;
    void ImposeMax(std::int64_t value) override;

protected:
    void Bind() override;
    std::int64_t ReadIntegerBound(EBound bound, Evaluation& evaluation) override;
    std::int64_t ReadIntegerInc(Evaluation& evaluation) override;
    void CheckInteger(std::int64_t value, Evaluation& evaluation) override;
    ValidValues OwnValidValues() const override;
    /// The range of what lies behind the node.
    virtual std::int64_t OwnBound(EBound bound, Evaluation& evaluation);
    virtual std::int64_t OwnInc(Evaluation& evaluation);
    bool HasLimits() const noexcept { return m_limits != nullptr; }

private:
    void CheckValidValue(std::int64_t value) const;

    IntegerLimits* m_limits = nullptr;

protected:
    ~CIntegerNode() = default;
};

/// Integer: a constant, the value of another node, or one of several by an index.
class CInteger final : public CSourcedNode<CIntegerNode, std::int64_t> {
public:
    using CSourcedNode::CSourcedNode;

protected:
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    std::int64_t OwnBound(EBound bound, Evaluation& evaluation) override;
    std::int64_t OwnInc(Evaluation& evaluation) override;
    CNode* Appearance() override;
    Waiting NeedBehind(EPart part) override;
};

}  // namespace GenApi
