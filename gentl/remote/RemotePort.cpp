/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RemotePort: the camera's registers and description
 */
#include "remote/RemotePort.h"

#include <fmt/format.h>

#include <algorithm>

namespace gentl {

namespace {

// A name for a file on any system.
std::string FileNameOf(const ServedDescription& served) {
    std::string name =
        fmt::format("{}_{}_{}_{}_{}_{:08x}", served.vendor, served.model, served.version[0], served.version[1],
                    served.version[2], static_cast<std::uint32_t>(std::hash<std::string>()(served.text)));
    const auto isPlain = [](unsigned char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
    };
    std::replace_if(
        name.begin(), name.end(), [&](char letter) { return !isPlain(static_cast<unsigned char>(letter)); }, '_');
    return name + ".xml";
}

}  // namespace

RemotePort::RemotePort(std::shared_ptr<OpenCamera> camera, const CameraRecord& record, AddedFeatures added,
                       bool readOnly)
    : m_camera(std::move(camera)),
      m_record(record),
      m_readOnly(readOnly),
      m_served(Complete(m_camera->Description(), added)),
      m_added({.portName = m_served.portName, .base = kAddedRegisters, .bigEndian = true}, m_served.added),
      m_fileName(FileNameOf(m_served)) {}

/// A GenCP camera's registers are big-endian over Camera Link.
PortFacts RemotePort::Facts() const {
    return {.id = m_record.id,
            .vendor = m_record.vendor,
            .model = m_record.model,
            .module = "Device",
            .version = m_record.version.empty() ? "1.0" : m_record.version,
            .portName = m_served.portName,
            .bigEndian = true,
            .writable = !m_readOnly};
}

DescriptionFacts RemotePort::Description() const {
    return {.fileName = m_fileName,
            .address = kServedDescription,
            .size = m_served.text.size(),
            .schema = m_served.schema,
            .version = m_served.version};
}

void RemotePort::Read(std::uint64_t address, std::span<std::uint8_t> bytes) {
    if (m_camera->IsLost())
        throw GenTLError(GC_ERR_IO, "The camera is gone");
    const std::uint64_t offset = address - kServedDescription;
    if (address >= kServedDescription && offset <= m_served.text.size() &&
        bytes.size() <= m_served.text.size() - offset)
        std::copy_n(m_served.text.begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
    else if (m_added.Contains(address))
        m_added.Read(address, bytes);
    else
        m_camera->Read(address, bytes);
}

void RemotePort::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    if (m_readOnly)
        throw GenTLError(GC_ERR_ACCESS_DENIED, "The device was opened for reading");
    if (m_camera->IsLost())
        throw GenTLError(GC_ERR_IO, "The camera is gone");
    if (m_added.Contains(address))
        m_added.Write(address, bytes);
    else
        m_camera->Write(address, bytes);
}

}  // namespace gentl
