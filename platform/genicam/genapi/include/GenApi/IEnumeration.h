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

struct IEnumeration : virtual public IValue {
    /// Symbolic names of the entries that are available now.
    virtual void GetSymbolics(StringList_t& symbolics) = 0;
    /// All entries of the description, whatever their access mode.
    virtual void GetEntries(NodeList_t& entries) = 0;
    IEnumeration& operator=(const GenICam::gcstring& symbolic) {
        FromString(symbolic);
        return *this;
    }
    virtual void SetIntValue(std::int64_t value, bool verify = true) = 0;
    GenICam::gcstring operator*() { return ToString(); }
    virtual std::int64_t GetIntValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The entry of a symbolic name, null when there is none.
    virtual IEnumEntry* GetEntryByName(const GenICam::gcstring& symbolic) = 0;
    /// The entry of an integer value, null when there is none.
    virtual IEnumEntry* GetEntry(std::int64_t value) = 0;
    virtual IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) = 0;

protected:
    ~IEnumeration() = default;
};

}  // namespace GenApi
