/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The memory of a camera: registers that check what is written and compute what is read
 */
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>

#include "gencp/ByteOrder.h"
#include "gencp/Registers.h"

namespace MarlowSim {

enum class Access { kRead, kReadWrite, kWrite };

/// Thread-bound.
class RegisterFile {
public:
    /// Makes the value that a read gives.
    using Reader = std::function<gencp::Bytes()>;
    /// Looks at a new value before it is taken over; anything but success refuses it.
    using Writer = std::function<std::uint16_t(gencp::ByteView)>;

    void Add(gencp::Register where, Access access, gencp::Bytes value);
    void AddText(gencp::Register where, Access access, std::string_view text);
    void AddNumber(gencp::Register where, Access access, std::uint64_t value);
    void OnRead(gencp::Register where, Reader reader);
    void OnWrite(gencp::Register where, Writer writer);

    std::uint16_t Read(std::uint64_t address, std::size_t length, gencp::Bytes& out) const;
    std::uint16_t Write(std::uint64_t address, gencp::ByteView data);

    gencp::Bytes Value(gencp::Register where) const;
    void SetValue(gencp::Register where, gencp::ByteView value);
    std::uint32_t Number(gencp::Register where) const;
    void SetNumber(gencp::Register where, std::uint32_t value);

private:
    struct Cell {
        gencp::Register where;
        Access access;
        gencp::Bytes value;
        Reader reader;
        Writer writer;
    };
    using Cells = std::map<std::uint64_t, Cell>;

    Cell& Find(gencp::Register where);
    const Cell& Find(gencp::Register where) const;
    static std::uint16_t WriteCell(Cell& cell, gencp::ByteView data);
    Cells::const_iterator CellAt(std::uint64_t address) const;

    Cells m_cells;
};

gencp::Bytes NumberBytes(std::uint64_t value, std::size_t length);

}  // namespace MarlowSim
