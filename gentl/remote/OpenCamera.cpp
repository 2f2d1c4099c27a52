/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenCamera: a camera that is open as a device of the base library
 */
#include "remote/OpenCamera.h"

#include <algorithm>

#include "GenApi/GenApi.h"
#include "support/Log.h"
#include "support/Translation.h"
#include "vanto/DeviceRemovalCallback.h"
#include "vanto/VantoFolders.h"

namespace gentl {

namespace {

// Consumers read a whole description in one call; a camera's driver splits it, but holds the line for as long.
constexpr std::size_t kPiece = 4096;

constexpr std::uint64_t kAlignment = 4;

/// An access as some cameras want it: whole words.
struct Words {
    std::uint64_t address;
    std::vector<std::uint8_t> bytes;
    std::size_t offset;  ///< of the bytes that are meant

    Words(std::uint64_t begin, std::size_t size)
        : address(begin / kAlignment * kAlignment), offset(static_cast<std::size_t>(begin - address)) {
        bytes.resize((offset + size + kAlignment - 1) / kAlignment * kAlignment);
    }
    bool IsSame(std::size_t size) const noexcept { return offset == 0 && bytes.size() == size; }
};

void Load(GenApi::IPort& port, std::uint64_t address, std::span<std::uint8_t> bytes) {
    port.Read(bytes.data(), static_cast<std::int64_t>(address), static_cast<std::int64_t>(bytes.size()));
}

void Store(GenApi::IPort& port, std::uint64_t address, std::span<const std::uint8_t> bytes) {
    port.Write(bytes.data(), static_cast<std::int64_t>(address), static_cast<std::int64_t>(bytes.size()));
}

// Consumers read and write bytes at any address; a camera that wants words refuses that as a wrong command.
void ReadPiece(GenApi::IPort& port, std::uint64_t address, std::span<std::uint8_t> bytes) {
    try {
        Load(port, address, bytes);
    } catch (const GenICam::InvalidArgumentException&) {
        Words words(address, bytes.size());
        if (words.IsSame(bytes.size()))
            throw;
        Load(port, words.address, words.bytes);
        std::copy_n(words.bytes.begin() + static_cast<std::ptrdiff_t>(words.offset), bytes.size(), bytes.begin());
    }
}

void WritePiece(GenApi::IPort& port, std::uint64_t address, std::span<const std::uint8_t> bytes) {
    try {
        Store(port, address, bytes);
    } catch (const GenICam::InvalidArgumentException&) {
        Words words(address, bytes.size());
        if (words.IsSame(bytes.size()))
            throw;
        Load(port, words.address, words.bytes);
        std::copy(bytes.begin(), bytes.end(), words.bytes.begin() + static_cast<std::ptrdiff_t>(words.offset));
        Store(port, words.address, words.bytes);
    }
}

// A camera refuses an address as out of range; what else it refuses of a command depends on what was asked for.
[[noreturn]] void RethrowAccessError(GC_ERROR wrongCommand) {
    try {
        throw;
    } catch (const GenICam::OutOfRangeException& error) {
        throw GenTLError(GC_ERR_INVALID_ADDRESS, error.GetDescription());
    } catch (const GenICam::InvalidArgumentException& error) {
        throw GenTLError(wrongCommand, error.GetDescription());
    } catch (...) {
        RethrowAsGenTLError();
    }
}

}  // namespace

/**
 * \brief Make the device and open it
 * \param[in] onLoss Called once the camera is gone, on whichever thread has found out; must not use the camera
 * \throw GenericException It can't be made or opened
 */
OpenCamera::OpenCamera(Vanto::ITransportLayer& layer, const Vanto::CDeviceInfo& info, LossListener onLoss)
    : m_layer(layer), m_device(layer.CreateDevice(info)) {
    if (m_device == nullptr)
        throw GenTLError(GC_ERR_ERROR, "The transport layer makes no device; VANTO_USE_TL may restrict it");
    try {
        m_device->Open();
        Vanto::RegisterRemovalCallback(*m_device, [this, onLoss = std::move(onLoss)](Vanto::IVantoDevice*) {
            m_isLost = true;
            onLoss();
        });
        FindRegisters();
    } catch (...) {
        Close();
        throw;
    }
}

OpenCamera::~OpenCamera() {
    Close();
}

/// Closes and destroys the device; does nothing the second time.
void OpenCamera::Close() noexcept {
    m_isClosing = true;
    const std::unique_lock lock(m_mutex);
    if (m_device == nullptr)
        return;
    try {
        if (m_device->IsOpen())
            m_device->Close();
        m_layer.DestroyDevice(m_device);
    } catch (const std::exception& error) {
        LogTrace(LogCategory(), Vanto::tracelog::kWarning, "Closing the device failed: %s", error.what());
    }
    m_device = nullptr;
}

// For the question which of them a write concerns.
void OpenCamera::FindRegisters() {
    GenApi::NodeList_t nodes;
    m_device->GetNodeMap()->GetNodes(nodes);
    for (GenApi::INode* const node : nodes)
        if (auto* const one = dynamic_cast<GenApi::IRegister*>(node))
            m_registers.emplace_back(node, one);
}

/// The camera's own description, as the device was made of it.
std::string OpenCamera::Description() {
    return Use([this](Vanto::IVantoDevice& device) {
        const std::string source = PropertyOf(device.GetDeviceInfo(), "XMLSource");
        if (source.rfind("Device", 0) != 0)
            return Vanto::textFileToString(source).str();
        Vanto::gcstring xml;
        Vanto::gcstring marker;
        m_layer.GetXmlFileProvider()->ProvideXMLFile(device.GetDeviceInfo(), marker, xml);
        return xml.str();
    });
}

GenApi::IPort& OpenCamera::PortOf(Vanto::IVantoDevice& device) {
    if (m_isLost)
        throw GenTLError(GC_ERR_IO, "The camera is gone");
    const GenApi::CPortPtr port(device.GetNodeMap()->GetNode("Device"));
    if (!port.IsValid())
        throw GenTLError(GC_ERR_IO, "The camera's description has no port 'Device'");
    return *port;
}

/// Reads registers as the camera has them, past all caches; any address and size.
void OpenCamera::Read(std::uint64_t address, std::span<std::uint8_t> bytes) {
    Use([&](Vanto::IVantoDevice& device) {
        GenApi::IPort& port = PortOf(device);
        try {
            for (; !bytes.empty(); bytes = bytes.subspan(std::min(kPiece, bytes.size()))) {
                const std::size_t count = std::min(kPiece, bytes.size());
                ReadPiece(port, address, bytes.first(count));
                address += count;
            }
        } catch (...) {
            RethrowAccessError(GC_ERR_INVALID_ADDRESS);
        }
    });
}

/// Writes registers; what the device itself knows of them is read again.
void OpenCamera::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    Use([&](Vanto::IVantoDevice& device) {
        try {
            WritePiece(PortOf(device), address, bytes);
        } catch (...) {
            RethrowAccessError(GC_ERR_INVALID_VALUE);
        }
        Invalidate(static_cast<std::int64_t>(address), static_cast<std::int64_t>(bytes.size()));
    });
}

// The consumer writes past the device's node map, whose values the frame grabber goes by.
void OpenCamera::Invalidate(std::int64_t address, std::int64_t length) {
    for (const auto& [node, one] : m_registers) {
        try {
            const std::int64_t begin = one->GetAddress();
            if (begin < address + length && address < begin + one->GetLength())
                node->InvalidateNode();
        } catch (const std::exception& error) {
            // One that has no address at present keeps nothing.
            LogTrace(LogCategory(), Vanto::tracelog::kDebug, "Register '%s' has no address: %s", node->GetName(),
                     error.what());
        }
    }
}

}  // namespace gentl
