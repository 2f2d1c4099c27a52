/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The references that the library has handed out, so that none is ever trusted as a pointer
 */

#include "PortTable.h"

#include "SerialError.h"
#include "clser/ClSerial.h"

namespace ClSerTty {

namespace {

[[noreturn]] void ThrowUnknown() {
    throw SerialError(CL_ERR_INVALID_REFERENCE, "The reference is none of an open serial port.");
}

}  // namespace

/**
 * \brief Make a reference for a port
 * \return A number that was never handed out before and is not null
 */
void* PortTable::Add(std::shared_ptr<SerialPort> port) {
    const std::lock_guard lock(m_mutex);
    // Steps of 16 keep a reference that was moved a little from being another port's.
    m_last += 16;
    m_ports.emplace(m_last, std::move(port));
    return reinterpret_cast<void*>(m_last);
}

/**
 * \brief Find the port of a reference
 * \throw SerialError CL_ERR_INVALID_REFERENCE when the reference is not of an open port
 */
std::shared_ptr<SerialPort> PortTable::Get(void* reference) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_ports.find(reinterpret_cast<std::uintptr_t>(reference));
    if (found == m_ports.end())
        ThrowUnknown();
    return found->second;
}

/**
 * \brief Forget a reference
 * \return Its port
 * \throw SerialError CL_ERR_INVALID_REFERENCE when the reference is not of an open port
 */
std::shared_ptr<SerialPort> PortTable::Remove(void* reference) {
    const std::lock_guard lock(m_mutex);
    auto node = m_ports.extract(reinterpret_cast<std::uintptr_t>(reference));
    if (node.empty())
        ThrowUnknown();
    return std::move(node.mapped());
}

}  // namespace ClSerTty
