/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port: a register space with a description, as the port functions see it
 */
#include "ports/Port.h"

#include <fmt/format.h>

#include "base/Sha1.h"
#include "support/GenTLError.h"
#include "support/Identity.h"

namespace gentl {

namespace {

std::string UrlOf(const DescriptionFacts& facts) {
    return fmt::format("local:{};{:x};{:x}", facts.fileName, facts.address, facts.size);
}

}  // namespace

Info Port::GetInfo(PORT_INFO_CMD command) const {
    const PortFacts facts = Facts();
    switch (command) {
        case PORT_INFO_ID:
            return facts.id;
        case PORT_INFO_VENDOR:
            return facts.vendor;
        case PORT_INFO_MODEL:
            return facts.model;
        case PORT_INFO_TLTYPE:
            return std::string(kTransportType);
        case PORT_INFO_MODULE:
            return facts.module;
        case PORT_INFO_LITTLE_ENDIAN:
            return BoolValue{!facts.bigEndian};
        case PORT_INFO_BIG_ENDIAN:
            return BoolValue{facts.bigEndian};
        case PORT_INFO_ACCESS_READ:
            return BoolValue{true};
        case PORT_INFO_ACCESS_WRITE:
            return BoolValue{facts.writable};
        case PORT_INFO_ACCESS_NA:
        case PORT_INFO_ACCESS_NI:
            return BoolValue{false};
        case PORT_INFO_VERSION:
            return facts.version;
        case PORT_INFO_PORTNAME:
            return facts.portName;
        default:
            ThrowUnknownCommand(command);
    }
}

/// There is one address, that of the description in the register space.
Info Port::GetUrlInfo(std::uint32_t index, URL_INFO_CMD command) {
    if (index != 0)
        throw GenTLError(GC_ERR_INVALID_INDEX, fmt::format("There is one URL, none with index {}", index));
    const DescriptionFacts facts = Description();
    switch (command) {
        case URL_INFO_URL:
            return UrlOf(facts);
        case URL_INFO_SCHEMA_VER_MAJOR:
        case URL_INFO_SCHEMA_VER_MINOR:
            return facts.schema[static_cast<std::size_t>(command - URL_INFO_SCHEMA_VER_MAJOR)];
        case URL_INFO_FILE_VER_MAJOR:
        case URL_INFO_FILE_VER_MINOR:
        case URL_INFO_FILE_VER_SUBMINOR:
            return facts.version[static_cast<std::size_t>(command - URL_INFO_FILE_VER_MAJOR)];
        case URL_INFO_FILE_SHA1_HASH:
            return DescriptionHash();
        case URL_INFO_FILE_REGISTER_ADDRESS:
            return facts.address;
        case URL_INFO_FILE_SIZE:
            return facts.size;
        case URL_INFO_SCHEME:
            return std::int32_t{URL_SCHEME_LOCAL};
        case URL_INFO_FILENAME:
            return facts.fileName;
        default:
            ThrowUnknownCommand(command);
    }
}

/// The URL with the schema's version behind it, as GCGetPortURL gives it.
std::string Port::UrlWithSchema() const {
    const DescriptionFacts facts = Description();
    return fmt::format("{}?SchemaVersion={}.{}.{}", UrlOf(facts), facts.schema[0], facts.schema[1], facts.schema[2]);
}

std::vector<std::uint8_t> Port::DescriptionHash() {
    const DescriptionFacts facts = Description();
    std::vector<std::uint8_t> text(facts.size);
    Read(facts.address, text);
    const base::Sha1Sum sum = base::Sha1(text);
    return {sum.begin(), sum.end()};
}

}  // namespace gentl
