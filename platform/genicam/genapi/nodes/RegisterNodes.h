/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes that are a piece of register space: IRegister on top of what else they are
 */
#pragma once

#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "core/RegisterCore.h"
#include "nodes/FloatNode.h"
#include "nodes/IntegerNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Adds IRegister to a kind of node. Base is a CNode with IValue, or CNode itself with CRawRegister's IValue.
template <class Base>
class CRegisterNode : public Base, public IRegister {
public:
    using Base::Base;

    // IRegister
    void Set(const std::uint8_t* buffer, std::int64_t length, bool verify = true) override;
    void Get(std::uint8_t* buffer, std::int64_t length, bool verify = false, bool ignoreCache = false) override;
    std::int64_t GetLength() override;
    std::int64_t GetAddress() override;

    RegisterCore* Register() override { return m_core; }
    Waiting NeedBehind(EPart part) override { return m_core->Need(part); }

protected:
    void Bind() override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool) override { return m_core->Access(evaluation); }
    RegisterCore& Core() noexcept { return *m_core; }

private:
    RegisterCore* m_core = nullptr;

protected:
    ~CRegisterNode() = default;
};

/// IValue and INode of a register without a number: its bytes in hexadecimal digits.
class CBytesNode : public CNode, virtual public IValue {
public:
    using CNode::CNode;
    using CNode::GetAccessMode;

    INode* GetNode() override { return this; }
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIRegister; }
    IValue* Value() override { return this; }

protected:
    ~CBytesNode() = default;
};

/// IValue and IString of a register with a text.
class CTextNode : public CValueNode<IString, intfIString> {
public:
    using CValueNode::CValueNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override {
        return GetValue(verify, ignoreCache);
    }
    void FromString(const GenICam::gcstring& text, bool verify = true) override { SetValue(text, verify); }
    bool IsValueCacheValid() const override;
    // IString
    void SetValue(const GenICam::gcstring& value, bool verify = true) override;
    GenICam::gcstring GetValue(bool verify = false, bool ignoreCache = false) override;

    bool HasText() const override { return true; }
    /// The longest text; the map's lock is held.
    virtual std::int64_t MaxLength(Evaluation& evaluation) = 0;
    std::int64_t GetMaxLength() override;

protected:
    ~CTextNode() = default;
};

/// Register, AdvFeatureLock and ConfRom: bytes.
class CRegister final : public CRegisterNode<CBytesNode> {
public:
    using CRegisterNode::CRegisterNode;
};

/// IntReg, MaskedIntReg and StructEntry: an integer of 1 to 8 bytes, or some bits of it.
class CIntReg final : public CRegisterNode<CIntegerNode> {
public:
    using CRegisterNode::CRegisterNode;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    std::int64_t OwnBound(EBound bound, Evaluation& evaluation) override;

private:
    /// Place of the bits in the register's integer, counted from the least significant one.
    struct Bits {
        unsigned shift;
        unsigned count;
    };

    Bits BitsOf(std::int64_t length) const;
    void CheckFits(std::int64_t value, const Bits& bits) const;

    std::int16_t m_lsb = -1;  // as the description counts; -1 for all bits
    std::int16_t m_msb = -1;
    bool m_isSigned = false;
};

/// FloatReg: a floating-point number of 4 or 8 bytes (IEEE 754).
class CFloatReg final : public CRegisterNode<CFloatNode> {
public:
    using CRegisterNode::CRegisterNode;

protected:
    double ReadFloat(Evaluation& evaluation) override;
    void WriteFloat(double value, Evaluation& evaluation) override;
    double OwnBound(EBound bound, Evaluation& evaluation) override;
};

/// StringReg: a text that ends at the first null byte or with the register.
class CStringReg final : public CRegisterNode<CTextNode> {
public:
    using CRegisterNode::CRegisterNode;

    std::int64_t MaxLength(Evaluation& evaluation) override { return Core().Length(evaluation); }

protected:
    std::string ReadText(Evaluation& evaluation) override;
    void WriteText(const std::string& text, Evaluation& evaluation) override;
};

}  // namespace GenApi
