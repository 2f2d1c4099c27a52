/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes whose number comes from a constant or from other nodes
 */
#pragma once

#include "nodes/ValueSource.h"

namespace GenApi {

/// Adds the source of its number to a kind of node. Number is std::int64_t or double.
template <class Base, class Number>
class CSourcedNode : public Base {
public:
    using Base::Base;

protected:
    void Bind() override {
        Base::Bind();
        m_source = &ValueSource<Number>::Require(*this);
    }
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override {
        return m_source->Access(evaluation, withLocks);
    }
    Waiting NeedBehind(EPart part) override { return {IsLimit(part) ? nullptr : m_source->OnlyTarget(), part}; }
    ValueSource<Number>& Source() noexcept { return *m_source; }

private:
    ValueSource<Number>* m_source = nullptr;

protected:
    ~CSourcedNode() = default;
};

}  // namespace GenApi
