/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where a node's number comes from: a constant or another node
 */

#include "nodes/ValueSource.h"

#include <type_traits>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/NodeMap.h"
#include "formula/FormulaArithmetic.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

template <class T>
T Operand<T>::Read(Evaluation& evaluation) const {
    if (node == nullptr)
        return constant;
    if constexpr (std::is_same_v<T, double>)
        return node->Float(evaluation);
    else
        return node->Integer(evaluation);
}

template <class T>
void Operand<T>::Write(T value, Evaluation& evaluation) {
    if (node == nullptr)
        constant = value;
    else if constexpr (std::is_same_v<T, double>)
        node->AssignFloat(value, evaluation);
    else
        node->AssignInteger(value, evaluation);
}

template <class T>
EAccessMode Operand<T>::Access(Evaluation& evaluation, bool withLocks) const {
    return node != nullptr ? node->Access(evaluation, withLocks) : RW;
}

template <class T>
T NumberOf(const CNode& owner, const Property& property, bool saturates) {
    const std::string_view text = owner.TextOf(property);
    if constexpr (std::is_same_v<T, double>) {
        if (const auto value = ParseFloat(text))
            return *value;
    } else {
        if (const auto value = saturates ? ParseSaturated(text) : ParseInteger(text))
            return *value;
        // "5.0" is an integer, too, although the schema does not know it as one.
        const auto number = ParseFloat(text);
        if (number && static_cast<double>(RoundToInteger(*number)) == *number)
            return RoundToInteger(*number);
    }
    throw INVALID_ARGUMENT_EXCEPTION("%s '%s' is no number", std::string(NameOf(property.tag)), Shortened(text));
}

CNode& NumberNodeOf(const CNode& owner, const Property& property) {
    CNode* node = owner.NodeOf(property);
    if (node == nullptr || node->Number() == ENumber::None)
        throw INVALID_ARGUMENT_EXCEPTION("%s refers to '%s', which has no number", std::string(NameOf(property.tag)),
                                         Shortened(owner.TextOf(property)));
    return *node;
}

template <class T>
std::vector<T> ParseList(std::string_view text) {
    std::vector<T> values;
    while (!text.empty()) {
        const std::size_t end = text.find(';');
        const std::string_view item = Trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (item.empty())
            continue;
        const auto value = [&] {
            if constexpr (std::is_same_v<T, double>)
                return ParseFloat(item);
            else
                return ParseInteger(item);
        }();
        if (!value)
            throw INVALID_ARGUMENT_EXCEPTION("ValidValueSet: '%s' is no number", Shortened(item));
        values.push_back(*value);
    }
    return values;
}

template <class T>
Operand<T> BindOperand(const CNode& owner, ETag constant, ETag reference) {
    Operand<T> operand;
    if (const Property* property = owner.Find(reference)) {
        operand.node = &NumberNodeOf(owner, *property);
        operand.isGiven = true;
    } else if (const Property* value = owner.Find(constant)) {
        operand.constant = NumberOf<T>(owner, *value, constant == ETag::Min || constant == ETag::Max);
        operand.isGiven = true;
    }
    return operand;
}

template <class T>
ValueSource<T>::ValueSource(const CNode& owner) : m_value(BindOperand<T>(owner, ETag::Value, ETag::pValue)) {
    std::vector<CNode*> copies;
    for (const Property& property : owner.Properties()) {
        if (property.tag == ETag::pValueCopy)
            copies.push_back(&NumberNodeOf(owner, property));
    }
    m_copies = owner.Map().Memory().Copy(copies);
    if (const Property* index = owner.Find(ETag::pIndex)) {
        m_index = &NumberNodeOf(owner, *index);
        BindIndexed(owner);
    }
}

template <class T>
ValueSource<T>& ValueSource<T>::Require(CNode& owner) {
    auto* const source = owner.Map().Memory().New<ValueSource<T>>(owner);
    if (!source->IsGiven())
        throw INVALID_ARGUMENT_EXCEPTION("has no value");
    return *source;
}

template <class T>
void ValueSource<T>::BindIndexed(const CNode& owner) {
    std::vector<Indexed> indexed;
    const std::span<const Property> properties = owner.Properties();
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const Property& property = properties[i];
        if (property.tag != ETag::ValueIndexed && property.tag != ETag::pValueIndexed)
            continue;
        const Property* attribute = i + 1 < properties.size() ? &properties[i + 1] : nullptr;
        if (attribute == nullptr || attribute->tag != ETag::AttributeIndex)
            throw INVALID_ARGUMENT_EXCEPTION("%s without Index", std::string(NameOf(property.tag)));
        Indexed entry{NumberOf<std::int64_t>(owner, *attribute), {}};
        entry.operand.isGiven = true;
        if (property.tag == ETag::pValueIndexed)
            entry.operand.node = &NumberNodeOf(owner, property);
        else
            entry.operand.constant = NumberOf<T>(owner, property);
        indexed.push_back(entry);
    }
    m_indexed = owner.Map().Memory().Copy(indexed);
    m_default = BindOperand<T>(owner, ETag::ValueDefault, ETag::pValueDefault);
}

template <class T>
Operand<T>* ValueSource<T>::Current(Evaluation& evaluation) {
    if (m_index == nullptr)
        return m_value.isGiven ? &m_value : nullptr;
    const std::int64_t index = m_index->Integer(evaluation);
    for (Indexed& entry : m_indexed) {
        if (entry.index == index)
            return &entry.operand;
    }
    return m_default.isGiven ? &m_default : nullptr;
}

template <class T>
Operand<T>& ValueSource<T>::Required(CNode& owner, Evaluation& evaluation) {
    Operand<T>* current = Current(evaluation);
    if (current == nullptr)
        throw OUT_OF_RANGE_EXCEPTION("%s: there is no value for the index", owner.Label());
    return *current;
}

template <class T>
T ValueSource<T>::Read(CNode& owner, Evaluation& evaluation) {
    return Required(owner, evaluation).Read(evaluation);
}

template <class T>
void ValueSource<T>::Write(CNode& owner, T value, Evaluation& evaluation) {
    Operand<T>& current = Required(owner, evaluation);
    if (current.node == nullptr)
        owner.Map().Changed(owner);
    if (m_copies.empty())
        return current.Write(value, evaluation);
    if (evaluation.writes != nullptr)
        return WriteAll(owner, current, value, evaluation);
    std::unordered_map<std::uint32_t, unsigned> counts;
    const ScopedValue writes(evaluation.writes, &counts);
    WriteAll(owner, current, value, evaluation);
}

// Copies are checked before anything is written: a value that one of them refuses is written nowhere.
template <class T>
void ValueSource<T>::WriteAll(CNode& owner, Operand<T>& current, T value, Evaluation& evaluation) {
    for (CNode* copy : m_copies) {
        Evaluation check = evaluation.Inner();
        if (!IsWritable(copy->Access(check, true)))
            throw ACCESS_EXCEPTION("%s: its copy %s is not writable", owner.Label(), copy->Label());
        if (evaluation.verify)
            copy->CheckValue(value, check);
    }
    current.Write(value, evaluation);
    for (CNode* copy : m_copies) {
        // What was written before may have changed what this one is checked with.
        owner.Map().Spread();
        Operand<T>{copy, T{}, true}.Write(value, evaluation);
    }
}

template <class T>
EAccessMode ValueSource<T>::Access(Evaluation& evaluation, bool withLocks) {
    if (m_index != nullptr && !IsReadable(m_index->Access(evaluation, false)))
        return NA;
    const Operand<T>* current = Current(evaluation);
    if (current == nullptr)
        return NA;
    EAccessMode mode = current->Access(evaluation, withLocks);
    for (CNode* copy : m_copies) {
        if (!IsWritable(copy->Access(evaluation, withLocks)))
            mode = Combine(mode, RO);
    }
    return mode;
}

template <class T>
CNode* ValueSource<T>::Target(CNode& owner, Evaluation& evaluation) {
    return Required(owner, evaluation).node;
}

template <class T>
CNode* ValueSource<T>::Appearance() {
    if (m_index == nullptr)
        return m_value.node;
    try {
        Evaluation evaluation;
        const Operand<T>* current = IsReadable(m_index->Access(evaluation, false)) ? Current(evaluation) : nullptr;
        return current != nullptr ? current->node : nullptr;
    } catch (const GenICam::GenericException&) {
        return nullptr;  // a device that does not answer has a unit all the same, if not this one
    }
}

template struct Operand<std::int64_t>;
template struct Operand<double>;
template class ValueSource<std::int64_t>;
template class ValueSource<double>;
template Operand<std::int64_t> BindOperand<std::int64_t>(const CNode&, ETag, ETag);
template Operand<double> BindOperand<double>(const CNode&, ETag, ETag);
template std::vector<std::int64_t> ParseList<std::int64_t>(std::string_view);
template std::vector<double> ParseList<double>(std::string_view);
template std::int64_t NumberOf<std::int64_t>(const CNode&, const Property&, bool);
template double NumberOf<double>(const CNode&, const Property&, bool);

}  // namespace GenApi
