/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port: where registers lie
 */

#include "core/Port.h"

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Values.h"

namespace GenApi {

void CPort::ConnectTo(IPort* port) noexcept {
    m_connected = port;
    m_swaps = ParseWord<bool>(TextOf(ETag::SwapEndianess)).value_or(false);
    m_mode = Ask();
}

EAccessMode CPort::Ask() const noexcept {
    if (m_connected == nullptr)
        return NI;
    const ForeignCall foreign(Map());
    try {
        return m_connected->GetAccessMode();
    } catch (...) {
        return NA;  // a device that can't even say so
    }
}

bool CPort::Refresh() noexcept {
    const EAccessMode before = m_mode;
    m_mode = Ask();
    return m_mode != before;
}

void CPort::ReadBytes(void* buffer, std::int64_t address, std::int64_t length) {
    if (m_connected == nullptr)
        throw ACCESS_EXCEPTION("%s is not connected", Label());
    const ForeignCall foreign(Map());
    m_connected->Read(buffer, address, length);
}

void CPort::WriteBytes(const void* buffer, std::int64_t address, std::int64_t length) {
    if (m_connected == nullptr)
        throw ACCESS_EXCEPTION("%s is not connected", Label());
    const ForeignCall foreign(Map());
    m_connected->Write(buffer, address, length);
}

/**
 * \brief Read from the device, past all caches
 * \throw AccessException Nothing is connected or it can't be read
 */
void CPort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    const MapAccess access(Map());
    RequireReadable();
    if (buffer == nullptr || length < 1)
        throw INVALID_ARGUMENT_EXCEPTION("%s: %I64d bytes can't be read", Label(), length);
    ReadBytes(buffer, address, length);
}

/**
 * \brief Write to the device
 *
 * All caches are dropped: nobody knows what the written bytes belong to.
 *
 * \throw AccessException Nothing is connected or it can't be written
 */
void CPort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    if (buffer == nullptr || length < 1)
        throw INVALID_ARGUMENT_EXCEPTION("%s: %I64d bytes can't be written", Label(), length);
    Map().Change(this, [&] {
        RequireWritable();
        WriteBytes(buffer, address, length);
        Map().EverythingChanged();
    });
}

}  // namespace GenApi
