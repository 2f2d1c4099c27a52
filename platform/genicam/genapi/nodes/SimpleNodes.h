/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes without numbers: Category, String, Port's relatives of IEEE 1212 and plain nodes
 */
#pragma once

#include "GenApi/ICategory.h"
#include "nodes/RegisterNodes.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Node: a name and documentation, nothing else.
class CPlainNode final : public CNode {
public:
    using CNode::CNode;
};

/// Category.
class CCategory final : public CValueNode<ICategory, intfICategory> {
public:
    using CValueNode::CValueNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return true; }
    // ICategory
    void GetFeatures(FeatureList_t& features) const override;
};

/// String: a text of its own or of another node.
class CString final : public CTextNode {
public:
    using CTextNode::CTextNode;

    std::int64_t MaxLength(Evaluation& evaluation) override;

protected:
    void Bind() override;
    std::string ReadText(Evaluation& evaluation) override;
    void WriteText(const std::string& text, Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;

private:
    CNode* m_value = nullptr;
};

/// Adds to a kind of node that it is an entry of a configuration ROM (IEEE 1212), found by its key.
template <class Base>
class CRomNode : public Base {
public:
    using Base::Base;

protected:
    void Bind() override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    /// The register that is the ROM, ready for use.
    RegisterCore& Rom();
    std::int64_t Key() const noexcept { return m_key; }

private:
    CNode* m_rom = nullptr;
    std::int64_t m_key = 0;

protected:
    ~CRomNode() = default;
};

/// TextDesc: a text of a configuration ROM.
class CTextDesc final : public CRomNode<CTextNode> {
public:
    using CRomNode::CRomNode;

    std::int64_t MaxLength(Evaluation& evaluation) override;

protected:
    std::string ReadText(Evaluation& evaluation) override;
};

/// IntKey: an integer of a configuration ROM.
class CIntKey final : public CRomNode<CIntegerNode> {
public:
    using CRomNode::CRomNode;

protected:
    std::int64_t ReadInteger(Evaluation& evaluation) override;
};

}  // namespace GenApi
