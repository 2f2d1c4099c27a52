/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A machine with simulated cameras on its serial ports
 */
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/LogListener.h"
#include "vanto/TlFactory.h"
#include "vanto/VantoCLSerDeviceInfo.h"

namespace integration {

using Vanto::CDeviceInfo;
using Vanto::CTlFactory;
using Vanto::DeviceInfoList;
using Vanto::gcstring;
using Vanto::tracelog::kDebug;
using Vanto::tracelog::kError;
using Vanto::tracelog::kWarning;

inline MarlowSim::CameraOptions Camera(const std::string& serial, const std::string& model = "H2048") {
    MarlowSim::CameraOptions options;
    options.serial = serial;
    options.model = model;
    return options;
}

/// The factory finds everything else by itself: plug-in, serial library and driver lie where they are installed.
class Machine : public testing::Test {
protected:
    ~Machine() override { CTlFactory::GetInstance().ReleaseUnusedTls(); }

    void Add(const std::string& name, const MarlowSim::CameraOptions& options, const std::string& settings = "") {
        simulator.Add(name, options);
        m_ports += "<Port><ID>COM_Port#" + name + "</ID><Enabled>yes</Enabled>" + settings + "</Port>\n";
        m_surroundings.WritePorts("\n" + m_ports);
        // Two files may be of the same second.
        m_age += std::chrono::hours(1);
        std::filesystem::last_write_time(m_surroundings.configuration / scripted::Surroundings::kPorts,
                                         m_start - m_age);
    }

    static DeviceInfoList Enumerate() {
        DeviceInfoList list;
        CTlFactory::GetInstance().EnumerateDevices(list);
        return list;
    }
    static std::vector<std::string> SerialNumbers() {
        std::vector<std::string> numbers;
        for (const CDeviceInfo& info : Enumerate())
            numbers.push_back(info.GetSerialNumber().str());
        return numbers;
    }
    static CDeviceInfo Partial(const std::string& serial) {
        CDeviceInfo info;
        info.SetDeviceClass("MarlowCameraLink").SetPropertyValue("SerialNumber", serial);
        return info;
    }

    /// Names the folder of the user's caches, where the GenTL producer keeps what it has seen, for other processes.
#ifdef _WIN32
    static constexpr const char* kCacheVariable = "LOCALAPPDATA";
#else
    static constexpr const char* kCacheVariable = "XDG_CACHE_HOME";
#endif

    scripted::Surroundings m_surroundings;
    const scripted::ScopedVariable m_userCaches{kCacheVariable, m_surroundings.cache.Path()};
    scripted::TemporaryFolder m_folder;  // for what a test writes itself
    Vanto::tracelog::LogRecorder m_log{"Vanto.*:trace"};
    MarlowSim::Simulator simulator{m_surroundings.links.Path()};

private:
    const std::filesystem::file_time_type m_start = std::filesystem::file_time_type::clock::now();
    std::chrono::hours m_age{0};
    std::string m_ports;
};

}  // namespace integration
