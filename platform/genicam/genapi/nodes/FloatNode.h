/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What nodes with a floating-point number have in common: IFloat, ranges, texts
 */
#pragma once

#include <limits>

#include "GenApi/IFloat.h"
#include "nodes/SourcedNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Range of a float node, as its description gives it. Lies in the map's arena.
struct FloatLimits {
    Operand<double> min;
    Operand<double> max;
    Operand<double> inc;
    std::span<double> validValues;
    double imposedMin = std::numeric_limits<double>::lowest();
    double imposedMax = std::numeric_limits<double>::max();
};

/// Base of all nodes with IFloat.
class CFloatNode : public CValueNode<IFloat, intfIFloat> {
public:
    using CValueNode::CValueNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    // IFloat
    void SetValue(double value, bool verify = true) override;
    double GetValue(bool verify = false, bool ignoreCache = false) override;
    double GetMin() override;
    double GetMax() override;
    bool HasInc() override;
    EIncMode GetIncMode() override;
    double GetInc() override;
    double_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    GenICam::gcstring GetUnit() override;
    EDisplayNotation GetDisplayNotation() override;
    std::int64_t GetDisplayPrecision() override;
    void ImposeMin(double value) override;
    void ImposeMax(double value) override;

protected:
    void Bind() override;
    double ReadFloatBound(EBound bound, Evaluation& evaluation) override;
    double ReadFloatInc(Evaluation& evaluation) override;
    void CheckFloat(double value, Evaluation& evaluation) override;
    ValidValues OwnValidValues() const override;
    virtual double OwnBound(EBound bound, Evaluation& evaluation);
    virtual double OwnInc(Evaluation& evaluation);
    bool HasLimits() const noexcept { return m_limits != nullptr; }

private:
    void CheckIncrement(double value, double min, Evaluation& evaluation);

    FloatLimits* m_limits = nullptr;

protected:
    ~CFloatNode() = default;
};

/// Float: a constant, the value of another node, or one of several by an index.
class CFloat final : public CSourcedNode<CFloatNode, double> {
public:
    using CSourcedNode::CSourcedNode;

protected:
    double ReadFloat(Evaluation& evaluation) override;
    void WriteFloat(double value, Evaluation& evaluation) override;
    double OwnBound(EBound bound, Evaluation& evaluation) override;
    double OwnInc(Evaluation& evaluation) override;
    CNode* Appearance() override;
    Waiting NeedBehind(EPart part) override;
};

}  // namespace GenApi
