/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The base of all nodes: names, texts, rules and caches that every node has
 */
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "GenApi/Diagnostics.h"
#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "core/Evaluation.h"
#include "core/ValidValues.h"
#include "schema/Description.h"

namespace GenApi {

class CNodeMap;
class RegisterCore;

/// Which end of a range.
enum class EBound : std::uint8_t { Min, Max };

/// What a node is made from.
struct NodeSeed {
    CNodeMap* map;
    const Description* description;
    std::uint32_t index;
};

/// A node of one map. What it is lies in the description, which other maps may share; what is known of it, here.
/// Its public operations take the map's lock; the others (Integer, Access, ...) want it taken. Nodes lie in the
/// map's arena and own nothing.
class CNode : public INode, public ISelector {
public:
    explicit CNode(const NodeSeed& seed);

    // IBase
    EAccessMode GetAccessMode() const override;
    // INode
    GenICam::gcstring GetName(bool fullQualified = false) const override;
    ENameSpace GetNameSpace() const override;
    EVisibility GetVisibility() const override;
    void InvalidateNode() override;
    bool IsCachable() const override;
    EYesNo IsAccessModeCacheable() const override;
    ECachingMode GetCachingMode() const override;
    std::int64_t GetPollingTime() const override;
    GenICam::gcstring GetToolTip() const override;
    GenICam::gcstring GetDescription() const override;
    GenICam::gcstring GetDisplayName() const override;
    GenICam::gcstring GetDeviceName() const override;
    void GetChildren(NodeList_t& children, ELinkType linkType = ctReadingChildren) const override;
    void GetParents(NodeList_t& parents) const override;
    CallbackHandleType RegisterCallback(CNodeCallback* callback) override;
    bool DeregisterCallback(CallbackHandleType handle) override;
    INodeMap* GetNodeMap() const override;
    GenICam::gcstring GetEventID() const override;
    bool IsStreamable() const override;
    void GetPropertyNames(GenICam::gcstring_vector& names) const override;
    bool GetProperty(const GenICam::gcstring& name, GenICam::gcstring& value,
                     GenICam::gcstring& attribute) const override;
    void ImposeAccessMode(EAccessMode imposed) override;
    void ImposeVisibility(EVisibility imposed) override;
    INode* GetAlias() const override;
    INode* GetCastAlias() const override;
    GenICam::gcstring GetDocuURL() const override;
    bool IsDeprecated() const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIBase; }
    bool IsFeature() const override;
    // ISelector
    bool IsSelector() const override;
    void GetSelectedFeatures(FeatureList_t& features) const override;
    void GetSelectingFeatures(FeatureList_t& features) const override;

    CNodeMap& Map() const noexcept { return *m_map; }
    std::uint32_t Index() const noexcept { return m_index; }
    ENodeKind Kind() const noexcept { return m_kind; }
    std::string_view Name() const noexcept { return m_description->NameOf(m_index); }
    bool Has(std::uint32_t flags) const noexcept { return (m_flags & flags) != 0; }
    void Set(std::uint32_t flags) noexcept { m_flags |= flags; }
    void Clear(std::uint32_t flags) noexcept { m_flags &= ~flags; }
    bool Is(std::uint32_t traits) const noexcept { return (m_traits & traits) != 0; }

    // Evaluation; the map's lock is held.
    /// The value as an integer, from the cache where it is known. A number with a fraction is rounded.
    std::int64_t Integer(Evaluation& evaluation) {
        return Has(kIntegerValid) && !evaluation.ignoreCache ? m_cache.integer : ComputeInteger(evaluation);
    }
    /// The value as a floating-point number, from the cache where it is known.
    double Float(Evaluation& evaluation) {
        return Has(kFloatValid) && !evaluation.ignoreCache ? m_cache.number : ComputeFloat(evaluation);
    }
    bool Truth(Evaluation& evaluation);
    /// What may be done with the node. Without locks: what pIsLocked leaves, which only decides about writing. Reading
    /// a value never asks it, so two features may lock each other.
    EAccessMode Access(Evaluation& evaluation, bool withLocks) {
        if (Has(withLocks ? kFullAccessValid : kReadAccessValid))
            return withLocks ? m_fullAccess : m_readAccess;
        return FindAccess(evaluation, withLocks);
    }
    std::int64_t IntegerBound(EBound bound, Evaluation& evaluation);
    double FloatBound(EBound bound, Evaluation& evaluation);
    std::int64_t IntegerInc(Evaluation& evaluation);
    double FloatInc(Evaluation& evaluation);  // 0 for none
    /// Finds out a part of the node's state, so that it is known when it is asked for.
    void FindOut(EPart part, Evaluation& evaluation);
    /// What has to be known before a part of the node, as far as that is certain; the node is null otherwise.
    Waiting Need(EPart part);
    /// True when a part needs not be found out.
    bool Knows(EPart part, const Evaluation& evaluation) const noexcept;
    /// Forgets what was found out in any access.
    void ForgetMemos() noexcept {
        Clear(kMemos);
        m_epoch = 0;
    }
    void AssignInteger(std::int64_t value, Evaluation& evaluation);
    void AssignFloat(double value, Evaluation& evaluation);
    std::string Text(Evaluation& evaluation);
    void AssignText(const std::string& text, Evaluation& evaluation);
    /// True when the description says that the node must not be polled now.
    bool IsPollingBlocked();
    /// Prepares the node for use. Throws when its description makes no sense.
    void Require() {
        if (!Usable())
            ThrowUnusable();
    }
    /// The same; false when it makes no sense.
    bool Usable() { return Has(kBound) ? !Has(kBroken) : BindNow(); }
    void Break(const std::string& reason);

    ENumber Number() const noexcept { return m_number; }
    virtual bool HasText() const { return false; }
    /// The interface for values, null when the node has none.
    virtual IValue* Value() { return nullptr; }
    /// The text of an element that a node takes from the node behind it when it has none itself, such as Unit.
    std::string_view InheritedText(ETag tag);
    /// The valid values of the node, or of the node behind it when it has none itself.
    ValidValues InheritedValidValues();
    /// Throws when the node would refuse the value.
    void CheckValue(std::int64_t value, Evaluation& evaluation);
    void CheckValue(double value, Evaluation& evaluation);
    virtual RegisterCore* Register() { return nullptr; }

    // The description of the node.
    std::span<const Property> Properties() const noexcept { return m_description->PropertiesOf(m_index); }
    /// What the description says, which other maps may share.
    const Description& Schema() const noexcept { return *m_description; }
    const Property* Find(ETag tag) const noexcept { return m_description->Find(m_index, tag); }
    std::string_view TextOf(const Property& property) const noexcept { return m_description->TextOf(property); }
    std::string_view TextOf(ETag tag) const noexcept;
    CNode* NodeOf(const Property& property) const;
    CNode* NodeOf(ETag tag) const;
    /// A name for messages: kind, name and line.
    std::string Label() const { return m_description->LabelOf(m_index); }
    /// A warning about this node, at its place.
    Warning MakeWarning(EWarningKind kind, const std::string& what) const;
    CNode* Enclosing() const;

protected:
    ~CNode() = default;

    /// Reads the description into the node; throws when it makes no sense.
    virtual void Bind() {}
    virtual std::int64_t ReadInteger(Evaluation& evaluation);
    virtual double ReadFloat(Evaluation& evaluation);
    virtual void WriteInteger(std::int64_t value, Evaluation& evaluation);
    virtual void WriteFloat(double value, Evaluation& evaluation);
    virtual std::string ReadText(Evaluation& evaluation);
    virtual void WriteText(const std::string& text, Evaluation& evaluation);
    virtual std::int64_t ReadIntegerBound(EBound bound, Evaluation& evaluation);
    virtual double ReadFloatBound(EBound bound, Evaluation& evaluation);
    virtual std::int64_t ReadIntegerInc(Evaluation& evaluation);
    virtual double ReadFloatInc(Evaluation& evaluation);
    /// The access mode that what lies behind the node allows.
    virtual EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks);
    /// As Need, for what lies behind the node.
    virtual Waiting NeedBehind(EPart) { return {}; }
    /// The node whose unit and representation this one takes when it has none itself.
    virtual CNode* Appearance() { return nullptr; }
    virtual ValidValues OwnValidValues() const { return {}; }
    virtual void CheckInteger(std::int64_t value, Evaluation& evaluation);
    virtual void CheckFloat(double value, Evaluation& evaluation);

    /// The access mode as a user sees it; the map's lock is held.
    EAccessMode FullAccess() const;
    void RequireReadable();
    void RequireWritable();
    void CheckError();
    [[noreturn]] void ThrowAccess(const char* what) const;
    /// What the interfaces of nodes with an integer do; take the map's lock. \a verify refuses what CheckInteger does.
    std::int64_t UsersInteger(bool verify, bool ignoreCache);
    void SetUsersInteger(std::int64_t value, bool verify);
    /// Whether the next read asks nobody: neither for the value nor for whether it may be read. Takes the map's lock.
    bool IsValueCached() const;

private:
    enum class Condition : std::uint8_t { None, False, True, Unknown };

    /// A number that was found out, of the type that the node computes with.
    union Known {
        std::int64_t integer;
        double number;

        template <class T>
        T& As() noexcept {
            if constexpr (std::is_same_v<T, double>)
                return number;
            else
                return integer;
        }
    };
    struct KnownLimits {
        Known values[3];  // least, greatest, increment
    };

    bool BindNow();
    [[noreturn]] void ThrowUnusable() const;
    std::int64_t ComputeInteger(Evaluation& evaluation);
    double ComputeFloat(Evaluation& evaluation);
    bool Remembers(EPart part, const Evaluation& evaluation) const noexcept;
    void MarkKnown(EPart part, const Evaluation& evaluation) noexcept;
    Known& PlaceOf(EPart part);
    template <class T>
    void Keep(EPart part, const Evaluation& evaluation, T value);
    template <class Compute>
    auto FromBelow(const Evaluation& evaluation, Compute&& compute);
    template <class T, class Compute>
    T Evaluate(EPart part, Evaluation& evaluation, Compute&& compute);
    EAccessMode FindAccess(Evaluation& evaluation, bool withLocks);
    EAccessMode FindAccessHere(Evaluation& evaluation, EPart part);
    void CountWrite(const Evaluation& evaluation) const;
    EAccessMode ComputeAccess(Evaluation& evaluation, bool withLocks);
    Condition Rule(ETag tag, Evaluation& evaluation) const;
    GenICam::gcstring StringOf(ETag tag) const;
    bool YesOf(ETag tag, bool otherwise) const;

    CNodeMap* m_map;
    const Description* m_description;  // that of the map
    std::uint32_t m_index;
    std::uint32_t m_flags = 0;
    std::uint8_t m_traits;
    ENodeKind m_kind;
    ENumber m_number;
    EVisibility m_userVisibility : 8 = Beginner;
    EAccessMode m_userAccess : 8 = RW;
    EAccessMode m_readAccess : 8 = NI;
    EAccessMode m_fullAccess : 8 = NI;
    std::uint32_t m_epoch = 0;  // the access that the memos are of
    Known m_cache{};
    KnownLimits* m_knownLimits = nullptr;
};

}  // namespace GenApi
