/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Boolean: true or false over an integer
 */

#include "nodes/Boolean.h"

#include "Base/GCException.h"
#include "core/NodeMap.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

void CBoolean::Bind() {
    m_on = 1;
    m_off = 0;
    if (const Property* on = Find(ETag::OnValue))
        m_on = NumberOf<std::int64_t>(*this, *on);
    if (const Property* off = Find(ETag::OffValue))
        m_off = NumberOf<std::int64_t>(*this, *off);
    if (m_on == m_off)
        throw INVALID_ARGUMENT_EXCEPTION("has the same value for true and false");
    CSourcedNode::Bind();
}

// A device that holds neither of both values is told so: to guess would be to lie.
std::int64_t CBoolean::ReadInteger(Evaluation& evaluation) {
    const std::int64_t value = Source().Read(*this, evaluation);
    if (value == m_on)
        return 1;
    if (value == m_off)
        return 0;
    throw OUT_OF_RANGE_EXCEPTION("%s: %I64d stands neither for true nor for false", Label(), value);
}

void CBoolean::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    Source().Write(*this, value != 0 ? m_on : m_off, evaluation);
}

void CBoolean::CheckInteger(std::int64_t value, Evaluation&) {
    if (value != 0 && value != 1)
        throw OUT_OF_RANGE_EXCEPTION("%s: %I64d is neither true nor false", Label(), value);
}

/**
 * \brief The value
 * \throw AccessException The node is not readable
 * \throw OutOfRangeException The integer behind is neither of both values
 *
 * \context Any thread
 */
bool CBoolean::GetValue(bool, bool ignoreCache) const {
    return const_cast<CBoolean&>(*this).UsersInteger(false, ignoreCache) != 0;
}

/**
 * \brief Set the value
 * \throw AccessException The node is not writable
 *
 * \context Any thread
 */
void CBoolean::SetValue(bool value, bool verify) {
    SetUsersInteger(value ? 1 : 0, verify);
}

GenICam::gcstring CBoolean::ToString(bool verify, bool ignoreCache) {
    return GetValue(verify, ignoreCache) ? "1" : "0";
}

void CBoolean::FromString(const GenICam::gcstring& text, bool verify) {
    const std::string_view word = Trimmed(text.view());
    if (word == "1" || word == "true" || word == "True" || word == "TRUE")
        return SetValue(true, verify);
    if (word == "0" || word == "false" || word == "False" || word == "FALSE")
        return SetValue(false, verify);
    throw INVALID_ARGUMENT_EXCEPTION("%s: '%s' is neither true nor false", Label(), text);
}

}  // namespace GenApi
