/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writes port configuration files
 */
#include "configuration/ConfigurationWriter.h"

#include <fmt/format.h>

#include "base/XmlText.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr const char* kHeading = R"(<?xml version="1.0" encoding="utf-8"?>
<!-- Which serial ports have a Camera Link camera behind them.
     ID                    the port, as 'vanto-cl ports' shows it
     Enabled               true, yes or 1: look for a camera on this port
     Manufacturer, Family, Model
                           the camera that the settings below are meant for; Family and Model may be left out
     BaudRate              rate to set on opening the camera, an entry of its ClSerialPortBaudRate; without it the
                           highest rate that camera and port have in common
     DeviceSpecificString  for the frame grabber
     'vanto-cl config check' tells what is wrong with this file. -->
<CLBindings>
)";

}  // namespace

/**
 * \brief The text of a configuration that enables ports
 * \param[in] portIds PortIDs; bytes that XML can't hold are written visibly, and such a port is never matched
 * \param[in] deviceSpecific DeviceSpecificString of every port; left out when it is empty
 */
std::string PortConfigurationText(const std::vector<std::string>& portIds, const std::string& deviceSpecific) {
    std::string text = kHeading;
    for (const std::string& portId : portIds) {
        text += fmt::format(
            "  <Port>\n    <ID>{}</ID>\n    <Enabled>true</Enabled>\n    <Manufacturer>Marlow</Manufacturer>\n",
            base::XmlText(Printable(portId)));
        if (!deviceSpecific.empty())
            text += fmt::format("    <DeviceSpecificString>{}</DeviceSpecificString>\n", base::XmlText(deviceSpecific));
        text += "  </Port>\n";
    }
    return text + "</CLBindings>\n";
}

}  // namespace tools
