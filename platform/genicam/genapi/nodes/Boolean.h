/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Boolean: true or false over an integer
 */
#pragma once

#include "GenApi/IBoolean.h"
#include "nodes/ValueNode.h"
#include "nodes/ValueSource.h"

namespace GenApi {

/// Boolean: true when the integer behind it has the value of OnValue.
class CBoolean final : public CValueNode<IBoolean, intfIBoolean> {
public:
    using CValueNode::CValueNode;

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
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    Waiting NeedBehind(EPart part) override { return {IsLimit(part) ? nullptr : m_source->OnlyTarget(), part}; }
    std::int64_t ReadIntegerBound(EBound bound, Evaluation&) override { return bound == EBound::Min ? 0 : 1; }
    void CheckInteger(std::int64_t value, Evaluation& evaluation) override;

private:
    ValueSource<std::int64_t>* m_source = nullptr;
    std::int64_t m_on = 1;
    std::int64_t m_off = 0;
};

}  // namespace GenApi
