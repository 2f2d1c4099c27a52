/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IEnumeration: a node with named values
 */
#pragma once

#include "Base/GCStringVector.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/INode.h"

namespace GenApi {

using StringList_t = GenICam::gcstring_vector;

/// A node whose values have names.
struct IEnumeration : virtual public IValue {
    /// Symbolic names of the entries that are available now.
    virtual void GetSymbolics(StringList_t& symbolics) = 0;
    /// All entries of the description, whatever their access mode.
    virtual void GetEntries(NodeList_t& entries) = 0;
    /// Sets the entry of a symbolic name, as FromString.
    IEnumeration& operator=(const GenICam::gcstring& symbolic) {
        FromString(symbolic);
        return *this;
    }
    /// Sets the entry of a value; throws OutOfRangeException when there is none, AccessException when it can't be
    /// written.
    virtual void SetIntValue(std::int64_t value, bool verify = true) = 0;
    /// The present entry's symbolic name.
    GenICam::gcstring operator*() { return ToString(); }
    /// The present entry's value; throws AccessException when it can't be read, with \a verify OutOfRangeException when
    /// it has no entry.
    virtual std::int64_t GetIntValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The entry of a symbolic name, null when there is none.
    virtual IEnumEntry* GetEntryByName(const GenICam::gcstring& symbolic) = 0;
    /// The entry of an integer value, null when there is none.
    virtual IEnumEntry* GetEntry(std::int64_t value) = 0;
    /// The present entry; null when the device holds a value without one.
    virtual IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) = 0;

protected:
    ~IEnumeration() = default;
};

}  // namespace GenApi
