/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of odd port configuration files have in common
 */
#pragma once

#include "VantoCLSer/configuration/PortConfiguration.h"
#include "tests/VantoCLSer/Fixture.h"

namespace clser_test {

constexpr char kFileName[] = "PortConfiguration_x64.xml";

class PortConfigurationInput : public PluginTest {
protected:
    Vanto::PortConfigurationList Read() const {
        Vanto::PortConfigurationList list;
        Vanto::ReadCLBindings(ConfigurationPath(), list);
        return list;
    }
    Vanto::PortConfigurationList Read(const std::string& text) const {
        m_folder.Write(kFileName, text);
        return Read();
    }
    Thrown Refuse() const {
        return ThrownBy([this] { Read(); });
    }
    Thrown Refuse(const std::string& text) const {
        m_folder.Write(kFileName, text);
        return Refuse();
    }
};

}  // namespace clser_test
