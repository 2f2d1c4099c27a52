/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Serial lines and the loaded serial library, for tests
 */

#include "Support.h"

#include <chrono>
#include <stdexcept>
#include <vector>

namespace ClSerTtyTest {

void SerialEnd::Send(const std::string& bytes) const {
    m_line->Send({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    m_line->IsRead();  // a line that is borrowed has the bytes when it answers
}

std::string SerialEnd::Receive(std::size_t count) const {
    const MarlowSim::TimePoint end = MarlowSim::Clock::now() + std::chrono::seconds(10);
    std::string bytes;
    while (bytes.size() < count && MarlowSim::Clock::now() < end) {
        std::vector<std::uint8_t> part(count - bytes.size());
        part.resize(m_line->Receive(part));
        bytes.append(part.begin(), part.end());
        if (part.empty()) {
            MarlowSim::Line* const line = m_line.get();
            m_waiter->Wait({&line, 1}, end);
        }
    }
    return bytes;
}

SerialLibrary::SerialLibrary() : m_library(CLSERTTY_FILE) {
    Find(GetManufacturerInfo, "clGetManufacturerInfo");
    Find(GetNumSerialPorts, "clGetNumSerialPorts");
    Find(GetSerialPortIdentifier, "clGetSerialPortIdentifier");
    Find(SerialInit, "clSerialInit");
    Find(SerialClose, "clSerialClose");
    Find(SerialRead, "clSerialRead");
    Find(SerialWrite, "clSerialWrite");
    Find(GetNumBytesAvail, "clGetNumBytesAvail");
    Find(FlushPort, "clFlushPort");
    Find(GetSupportedBaudRates, "clGetSupportedBaudRates");
    Find(SetBaudRate, "clSetBaudRate");
    Find(GetErrorText, "clGetErrorText");
    Find(SetParity, "clSetParity");
}

template <typename Function>
void SerialLibrary::Find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(m_library.Symbol(name));
}

std::string SerialLibrary::TextOf(std::int32_t code) const {
    std::uint32_t size = 0;
    if (GetErrorText(code, nullptr, &size) != CL_ERR_BUFFER_TOO_SMALL)
        return {};
    std::string text(size, '\0');
    if (GetErrorText(code, text.data(), &size) != CL_ERR_NO_ERR)
        return {};
    text.pop_back();
    return text;
}

std::uint32_t SerialLibrary::IndexOf(const std::string& name) const {
    std::uint32_t count = 0;
    GetNumSerialPorts(&count);
    for (std::uint32_t index = 0; index < count; ++index) {
        char text[256] = {};
        std::uint32_t size = sizeof(text);
        if (GetSerialPortIdentifier(index, text, &size) == CL_ERR_NO_ERR && name == text)
            return index;
    }
    throw std::runtime_error("no port " + name);
}

}  // namespace ClSerTtyTest
