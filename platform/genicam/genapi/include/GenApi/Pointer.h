/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Smart pointers to the interfaces of a node
 */
#pragma once

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"

namespace GenApi {

/// A pointer that asks the object for interface T when it is assigned; null when the object lacks it.
template <class T, class B = IBase>
class CPointer {
public:
    CPointer() noexcept = default;
    /// Points to nothing.
    CPointer(std::nullptr_t) noexcept {}
    /// Points to the object's interface T; to nothing when it has none.
    CPointer(B* object) : m_pT(dynamic_cast<T*>(object)) {}
    /// Points to another object's interface.
    CPointer& operator=(B* object) {
        m_pT = dynamic_cast<T*>(object);
        return *this;
    }

    /// The interface; null for none.
    operator T*() const noexcept { return m_pT; }
    /// The interface; throws LogicalErrorException when it points to nothing.
    T& operator*() const { return *Checked(); }
    /// The interface; throws LogicalErrorException when it points to nothing.
    T* operator->() const { return Checked(); }
    /// Whether it points to something.
    bool IsValid() const noexcept { return m_pT != nullptr; }
    /// Whether it points to something.
    explicit operator bool() const noexcept { return m_pT != nullptr; }
    /// Whether both point to the same.
    bool operator==(const CPointer& other) const noexcept { return m_pT == other.m_pT; }
    /// Whether it points to this.
    bool operator==(const T* other) const noexcept { return m_pT == other; }
    /// Whether it points to nothing.
    bool operator==(std::nullptr_t) const noexcept { return m_pT == nullptr; }

private:
    T* Checked() const {
        if (m_pT == nullptr)
            throw LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
        return m_pT;
    }

    T* m_pT = nullptr;
};

using CNodePtr = CPointer<INode>;
using CValuePtr = CPointer<IValue>;
using CCategoryPtr = CPointer<ICategory>;
using CIntegerPtr = CPointer<IInteger>;
using CFloatPtr = CPointer<IFloat>;
using CEnumerationPtr = CPointer<IEnumeration>;
using CEnumEntryPtr = CPointer<IEnumEntry>;
using CBooleanPtr = CPointer<IBoolean>;
using CCommandPtr = CPointer<ICommand>;
using CStringPtr = CPointer<IString>;
using CRegisterPtr = CPointer<IRegister>;
using CSelectorPtr = CPointer<ISelector>;
using CPortPtr = CPointer<IPort>;
using CBasePtr = CPointer<IBase>;

template <class T, class B>
bool IsReadable(const CPointer<T, B>& pointer) {
    return IsReadable(static_cast<T*>(pointer));
}
template <class T, class B>
bool IsWritable(const CPointer<T, B>& pointer) {
    return IsWritable(static_cast<T*>(pointer));
}
template <class T, class B>
bool IsImplemented(const CPointer<T, B>& pointer) {
    return IsImplemented(static_cast<T*>(pointer));
}
template <class T, class B>
bool IsAvailable(const CPointer<T, B>& pointer) {
    return IsAvailable(static_cast<T*>(pointer));
}

}  // namespace GenApi
