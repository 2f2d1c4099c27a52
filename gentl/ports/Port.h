/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port: a register space with a description, as the port functions see it
 */
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "support/HandleTable.h"
#include "support/Info.h"

namespace gentl {

/// What the port functions tell about a port.
struct PortFacts {
    std::string id;
    std::string vendor;
    std::string model;
    std::string module;  ///< TLSystem, TLInterface, TLDevice, TLDataStream or Device
    std::string version;
    std::string portName;  ///< name of the Port node in the description
    bool bigEndian = false;
    bool writable = true;
};

/// Where a port's description lies.
struct DescriptionFacts {
    std::string fileName;
    std::uint64_t address = 0;
    std::uint64_t size = 0;  ///< bytes, without anything behind the text
    std::array<std::int32_t, 3> schema{1, 1, 0};
    std::array<std::int32_t, 3> version{1, 0, 0};
};

/// One access to registers is all of its bytes or an error. Thread-safe.
class Port {
public:
    virtual ~Port() = default;

    virtual PortFacts Facts() const = 0;
    virtual DescriptionFacts Description() const = 0;
    /// Throws GenTLError: INVALID_ADDRESS, ACCESS_DENIED, IO.
    virtual void Read(std::uint64_t address, std::span<std::uint8_t> bytes) = 0;
    /// Throws GenTLError: INVALID_ADDRESS, ACCESS_DENIED, INVALID_VALUE, IO.
    virtual void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) = 0;

    Info GetInfo(PORT_INFO_CMD command) const;
    Info GetUrlInfo(std::uint32_t index, URL_INFO_CMD command);
    std::string UrlWithSchema() const;

protected:
    Port() = default;
    Port(const Port&) = default;
    Port& operator=(const Port&) = default;

private:
    std::vector<std::uint8_t> DescriptionHash();
};

}  // namespace gentl
