/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Boolean: true or false over an integer
 */
#pragma once

#include "GenApi/IBoolean.h"
#include "nodes/SourcedNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Boolean: true when the integer behind it has the value of OnValue.
class CBoolean final : public CSourcedNode<CValueNode<IBoolean, intfIBoolean>, std::int64_t> {
public:
    using CSourcedNode::CSourcedNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    // IBoolean
    void SetValue(bool value, bool verify = true) override;
    bool GetValue(bool verify = false, bool ignoreCache = false) const override;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    std::int64_t ReadIntegerBound(EBound bound, Evaluation&) override { return bound == EBound::Min ? 0 : 1; }
    void CheckInteger(std::int64_t value, Evaluation& evaluation) override;

private:
    std::int64_t m_on = 1;
    std::int64_t m_off = 0;
};

}  // namespace GenApi
