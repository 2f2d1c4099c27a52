/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Scripted ports and cameras, a configuration file of the test's own, and what the plug-in logs
 */
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "scripted/Scripted.h"
#include "scripted/Thrown.h"
#include "vanto/LogListener.h"

namespace clser_test {

using scripted::Thrown;
using scripted::ThrownBy;
using Vanto::gcstring;
using Vanto::gcstring_vector;
using Vanto::tracelog::kDebug;
using Vanto::tracelog::kError;
using Vanto::tracelog::kTrace;
using Vanto::tracelog::kWarning;

inline constexpr char kTl[] = "Vanto.CLSer.TL";
inline constexpr char kPort[] = "Vanto.CLSer.Port";
inline constexpr char kFrame[] = "vanto.base.TL";
inline constexpr char kCamera[] = "Marlow#Heron#H2048#1234";

/// A message as tests compare it.
struct Logged {
    std::uint32_t level = 0;
    std::string format;
    std::vector<std::string> arguments;

    bool operator==(const Logged&) const = default;
    friend void PrintTo(const Logged& logged, std::ostream* out) {
        *out << logged.level << " \"" << logged.format << '"';
        for (const std::string& argument : logged.arguments)
            *out << ", '" << argument << "'";
    }
};

inline std::vector<gcstring> ToVector(const gcstring_vector& texts) {
    return {texts.begin(), texts.end()};
}

/// An entry of a configuration file.
inline std::string PortElement(const std::string& id, const std::string& rest = "",
                               const std::string& enabled = "true") {
    return "<Port><ID>" + id + "</ID><Enabled>" + enabled + "</Enabled>" + rest + "</Port>";
}

/// The test's own scripted libraries, configuration file and log.
class PluginTest : public testing::Test {
protected:
    void WriteConfiguration(const std::string& ports) {
        m_folder.Write("PortConfiguration_x64.xml", "<CLBindings>" + ports + "</CLBindings>");
    }
    std::string ConfigurationPath() const { return m_folder / "PortConfiguration_x64.xml"; }

    std::vector<Logged> LoggedIn(const std::string& category) const {
        std::vector<Logged> found;
        for (const Vanto::tracelog::LogMessage& message : m_log.GetMessages()) {
            if (message.category == category)
                found.push_back({message.level, message.format, message.arguments});
        }
        return found;
    }
    std::size_t CountLogged(const std::string& category, const Logged& wanted) const {
        std::size_t count = 0;
        for (const Logged& logged : LoggedIn(category))
            count += logged == wanted ? 1 : 0;
        return count;
    }
    std::size_t CountFormat(const std::string& format) const { return m_log.CountFormat(format); }

    scripted::Environment m_environment;
    scripted::TemporaryFolder m_folder;
    scripted::ScopedVariable m_bindings{"VANTO_CL_BINDINGS", m_folder.Path()};
    scripted::ScopedVariable m_use{"VANTO_USE_TL"};
    Vanto::tracelog::LogRecorder m_log{"Vanto.*:trace,vanto.*:trace"};
};

}  // namespace clser_test
