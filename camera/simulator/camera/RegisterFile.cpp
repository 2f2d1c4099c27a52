/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The memory of a camera: registers that check what is written and compute what is read
 */

#include "camera/RegisterFile.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "gencp/Protocol.h"

namespace MarlowSim {

using gencp::Bytes;
using gencp::ByteView;
using gencp::Register;

/**
 * \brief Give a number as big-endian bytes
 * \param[in] length Number of bytes; those in front of the number are 0, those that do not fit are left out
 */
Bytes NumberBytes(std::uint64_t value, std::size_t length) {
    Bytes bytes(std::max<std::size_t>(length, 8));
    gencp::Store64(bytes, bytes.size() - 8, value);
    bytes.erase(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(length));
    return bytes;
}

/**
 * \brief Lay a register
 * \param[in] value As many bytes as the register has
 */
void RegisterFile::Add(Register where, Access access, Bytes value) {
    value.resize(where.length);
    m_cells[where.address] = Cell{where, access, std::move(value), nullptr, nullptr};
}

/// A text is padded with NUL; one that fills the register has no terminator.
void RegisterFile::AddText(Register where, Access access, std::string_view text) {
    Add(where, access, Bytes(text.begin(), text.end()));
}

void RegisterFile::AddNumber(Register where, Access access, std::uint64_t value) {
    Add(where, access, NumberBytes(value, where.length));
}

void RegisterFile::OnRead(Register where, Reader reader) {
    Find(where).reader = std::move(reader);
}

void RegisterFile::OnWrite(Register where, Writer writer) {
    Find(where).writer = std::move(writer);
}

RegisterFile::Cells::const_iterator RegisterFile::CellAt(std::uint64_t address) const {
    auto next = m_cells.upper_bound(address);
    if (next == m_cells.begin())
        return m_cells.end();
    --next;
    return address - next->first < next->second.where.length ? next : m_cells.end();
}

/**
 * \brief Read bytes of any registers that lie without a gap between them
 * \return A GenCP status; \a out holds all bytes after success only
 */
std::uint16_t RegisterFile::Read(std::uint64_t address, std::size_t length, Bytes& out) const {
    Bytes bytes;
    while (bytes.size() < length) {
        const std::uint64_t at = address + bytes.size();
        const auto cell = CellAt(at);
        if (cell == m_cells.end())
            return gencp::kStatusInvalidAddress;
        if (cell->second.access == Access::kWrite)
            return gencp::kStatusAccessDenied;
        const Bytes computed = cell->second.reader ? cell->second.reader() : Bytes();
        const ByteView value = cell->second.reader ? ByteView(computed) : ByteView(cell->second.value);
        const ByteView rest = value.subspan(static_cast<std::size_t>(at - cell->first));
        const ByteView part = rest.first(std::min(rest.size(), length - bytes.size()));
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    out = std::move(bytes);
    return gencp::kStatusSuccess;
}

/**
 * \brief Write one or several whole registers, or the beginning of a text
 * \return A GenCP status; after a failure the registers in front of the one that refused have their new value
 */
std::uint16_t RegisterFile::Write(std::uint64_t address, ByteView data) {
    std::size_t done = 0;
    while (done < data.size()) {
        const auto found = m_cells.find(address + done);
        if (found == m_cells.end())
            return CellAt(address + done) == m_cells.end() ? gencp::kStatusInvalidAddress : gencp::kStatusBadAlignment;
        Cell& cell = found->second;
        const std::size_t count = std::min<std::size_t>(cell.where.length, data.size() - done);
        const std::uint16_t status = WriteCell(cell, data.subspan(done, count));
        if (gencp::IsError(status))
            return status;
        done += count;
    }
    return gencp::kStatusSuccess;
}

std::uint16_t RegisterFile::WriteCell(Cell& cell, ByteView data) {
    constexpr std::size_t kLargestNumber = 8;
    if (cell.access == Access::kRead)
        return gencp::kStatusWriteProtected;
    if (data.size() < cell.where.length && cell.where.length <= kLargestNumber)
        return gencp::kStatusBadAlignment;
    Bytes value(data.begin(), data.end());
    value.resize(cell.where.length);
    const std::uint16_t status = cell.writer ? cell.writer(value) : gencp::kStatusSuccess;
    if (!gencp::IsError(status))
        cell.value = std::move(value);
    return status;
}

RegisterFile::Cell& RegisterFile::Find(Register where) {
    const auto found = m_cells.find(where.address);
    if (found == m_cells.end())
        throw std::logic_error("no register at " + std::to_string(where.address));
    return found->second;
}

const RegisterFile::Cell& RegisterFile::Find(Register where) const {
    return const_cast<RegisterFile*>(this)->Find(where);
}

/// The value as it was stored, whatever a read gives.
Bytes RegisterFile::Value(Register where) const {
    return Find(where).value;
}

/// Stores a value without asking whether it may be written.
void RegisterFile::SetValue(Register where, ByteView value) {
    Find(where).value.assign(value.begin(), value.end());
}

std::uint32_t RegisterFile::Number(Register where) const {
    return gencp::Load32(Find(where).value, 0);
}

void RegisterFile::SetNumber(Register where, std::uint32_t value) {
    gencp::Store32(Find(where).value, 0, value);
}

}  // namespace MarlowSim
