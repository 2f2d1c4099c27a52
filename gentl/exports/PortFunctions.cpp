/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions of ports
 */
#include "exports/Guard.h"

using namespace gentl;

namespace {

// A buffer has no port: its handle is a right one all the same.
std::shared_ptr<PortObject> PortOf(Library& library, PORT_HANDLE handle) {
    const std::shared_ptr<Object> object = library.Handles().Find(handle);
    if (auto port = std::dynamic_pointer_cast<PortObject>(object))
        return port;
    if (std::dynamic_pointer_cast<StreamBuffer>(object))
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "A buffer has no port");
    throw GenTLError(GC_ERR_INVALID_HANDLE, "The handle stands for nothing, or for something without a port");
}

template <class Action>
GC_ERROR WithPort(PORT_HANDLE handle, Action&& action) noexcept {
    return Guarded([&](Library& library) { action(*PortOf(library, handle)); });
}

template <class Reader>
GC_ERROR AskPort(PORT_HANDLE handle, const InfoTarget& target, Reader&& read) noexcept {
    return WithPort(handle, [&](PortObject& port) {
        CheckTarget(target);
        WriteInfo(read(port), target);
    });
}

std::span<std::uint8_t> BytesOf(void* buffer, std::size_t size) {
    if (size == 0)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, "An access needs at least one byte");
    return {static_cast<std::uint8_t*>(Required(buffer, "pBuffer")), size};
}

/// Runs an access for each entry, and says of how many it went well.
template <class Access>
GC_ERROR Stacked(PORT_HANDLE handle, const PORT_REGISTER_STACK_ENTRY* entries, size_t* count,
                 Access&& access) noexcept {
    return WithPort(handle, [&](PortObject& port) {
        Required(entries, "pEntries");
        const size_t wanted = Load(Required(count, "piNumEntries"));
        Store(count, size_t{0});
        for (size_t done = 0; done < wanted; Store(count, ++done)) {
            const PORT_REGISTER_STACK_ENTRY entry = Load(entries + done);
            access(port, entry.Address, BytesOf(entry.pBuffer, entry.Size));
        }
    });
}

}  // namespace

extern "C" {

GC_API GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return AskPort(hPort, {piType, pBuffer, piSize}, [&](PortObject& port) { return port.GetInfo(iInfoCmd); });
}

GC_API GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
    return WithPort(hPort, [&](PortObject&) { Store(Required(piNumURLs, "piNumURLs"), 1U); });
}

GC_API GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                        void* pBuffer, size_t* piSize) {
    return AskPort(hPort, {piType, pBuffer, piSize},
                   [&](PortObject& port) { return port.GetUrlInfo(iURLIndex, iInfoCmd); });
}

GC_API GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
    return WithPort(hPort, [&](PortObject& port) {
        CheckTarget({nullptr, sURL, piSize});
        WriteInfo(StringList{{port.UrlWithSchema()}}, {nullptr, sURL, piSize});
    });
}

GC_API GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer, size_t* piSize) {
    return WithPort(hPort,
                    [&](PortObject& port) { port.Read(iAddress, BytesOf(pBuffer, Load(Required(piSize, "piSize")))); });
}

GC_API GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer, size_t* piSize) {
    return WithPort(hPort, [&](PortObject& port) {
        port.Write(iAddress, BytesOf(const_cast<void*>(pBuffer), Load(Required(piSize, "piSize"))));
    });
}

GC_API GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* piNumEntries) {
    return Stacked(
        hPort, pEntries, piNumEntries,
        [](PortObject& port, uint64_t address, std::span<std::uint8_t> bytes) { port.Read(address, bytes); });
}

GC_API GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* piNumEntries) {
    return Stacked(
        hPort, pEntries, piNumEntries,
        [](PortObject& port, uint64_t address, std::span<std::uint8_t> bytes) { port.Write(address, bytes); });
}

}  // extern "C"
