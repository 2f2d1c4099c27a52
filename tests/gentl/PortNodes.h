/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A node map over a port of the producer, as every consumer has one
 */
#pragma once

#include <string>

#include "GenApi/GenApi.h"
#include "tests/gentl/Producer.h"

namespace gentl_test {

/// Reads and writes through the port functions.
class PortNodes final : public GenApi::IPort {
public:
    PortNodes(PORT_HANDLE port, const std::string& description) : m_port(port) {
        m_map._LoadXMLFromString(description.c_str());
        const std::string name = InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* size) {
            return TL().GCGetPortInfo(m_port, PORT_INFO_PORTNAME, type, text, size);
        });
        if (!m_map._Connect(this, name.c_str()))
            throw std::runtime_error("the description has no port " + name);
    }

    GenApi::INode* operator[](const char* name) const { return m_map._GetNode(name); }
    std::string Value(const char* name) const {
        const GenApi::CValuePtr value = m_map._GetNode(name);
        return value.IsValid() ? value->ToString().str() : "no such node";
    }
    void Set(const char* name, const std::string& text) const {
        const GenApi::CValuePtr value = m_map._GetNode(name);
        value->FromString(text.c_str());
    }
    void Execute(const char* name) const {
        const GenApi::CCommandPtr command = m_map._GetNode(name);
        command->Execute();
    }
    GenApi::CNodeMapRef& Map() { return m_map; }

    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
    GenApi::EInterfaceType GetPrincipalInterfaceType() const { return GenApi::intfIPort; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        auto size = static_cast<std::size_t>(length);
        Check(TL().GCReadPort(m_port, static_cast<std::uint64_t>(address), buffer, &size));
    }
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override {
        auto size = static_cast<std::size_t>(length);
        Check(TL().GCWritePort(m_port, static_cast<std::uint64_t>(address), buffer, &size));
    }

private:
    static void Check(GC_ERROR result) {
        if (result != GC_ERR_SUCCESS)
            throw RUNTIME_EXCEPTION("error %d", result);
    }

    const PORT_HANDLE m_port;
    GenApi::CNodeMapRef m_map;
};

}  // namespace gentl_test
