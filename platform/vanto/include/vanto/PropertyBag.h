/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Named string properties, and the bags that hold them
 */
#pragma once

#include <atomic>
#include <map>
#include <string>

#include "vanto/VantoTypes.h"

namespace Vanto {

/// Named string properties. Names are case-sensitive.
class VANTOBASE_API IProperties {
public:
    /// Replaces the list by the names of all properties; returns how many there are.
    virtual int GetPropertyNames(StringList_t& names) const = 0;
    /// Whether there is a property of this name.
    virtual bool GetPropertyAvailable(const gcstring& name) const = 0;
    /// Sets \a value and returns true when there is a property of this name.
    virtual bool GetPropertyValue(const gcstring& name, gcstring& value) const = 0;
    /// Sets or adds a property.
    virtual IProperties& SetPropertyValue(const gcstring& name, const gcstring& value) = 0;
    /// True when every property of \a subset is here with the same value.
    virtual bool IsSubset(const IProperties& subset) const = 0;
    /// Whether the application made the record, not a transport layer.
    virtual bool IsUserProvided() const = 0;
    virtual ~IProperties() = default;
};

/// A property as a text; empty when there is none of this name.
inline std::string PropertyOf(const IProperties& properties, const char* name) {
    gcstring value;
    return properties.GetPropertyValue(name, value) ? value.str() : std::string();
}

/// Properties with a record of what was done with them since the flags were last cleared. Copies keep that record.
/// Const operations may run in several threads at once, as of a device whose info is read while it is used.
class VANTOBASE_API CPropertyBag {
public:
    bool Get(const gcstring& name, gcstring& value) const;
    void Set(const gcstring& name, const gcstring& value);
    /// Whether there is a property of this name.
    bool Contains(const gcstring& name) const;
    int GetNames(StringList_t& names) const;
    bool IsModified() const noexcept;
    bool IsAccessed(const gcstring& name) const;
    void ClearAccessFlags() noexcept;

private:
    // Reading sets it, so that it must stand reading from several threads.
    class AccessFlag {
    public:
        AccessFlag() = default;
        AccessFlag(const AccessFlag& other) noexcept : m_set(other.IsSet()) {}
        AccessFlag& operator=(const AccessFlag& other) noexcept {
            Set(other.IsSet());
            return *this;
        }
        bool IsSet() const noexcept { return m_set.load(std::memory_order_relaxed); }
        void Set(bool value) noexcept { m_set.store(value, std::memory_order_relaxed); }

    private:
        std::atomic<bool> m_set{false};
    };
    struct Property {
        gcstring value;
        mutable AccessFlag accessed;
        bool modified = false;
    };
    std::map<gcstring, Property> m_properties;
};

/// What an info record holds: its properties, and whether the application made it. Copies keep all of it.
class VANTOBASE_API CInfoImpl : public CPropertyBag {
public:
    /// Whether the application made the record.
    bool IsUserProvided() const noexcept { return m_userProvided; }
    /// Makes it a transport layer's record.
    void ClearUserProvidedFlag() noexcept { m_userProvided = false; }

private:
    bool m_userProvided = true;
};

}  // namespace Vanto
