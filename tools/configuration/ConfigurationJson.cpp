/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port configuration entries as JSON
 */
#include "configuration/ConfigurationJson.h"

namespace tools {

/// Members named as the elements of the file, and the entry's line.
Json ToJson(const PortEntry& entry) {
    return {{"Line", entry.place.line},        {"ID", entry.id.text},
            {"Enabled", entry.IsEnabled()},    {"Manufacturer", entry.manufacturer.text},
            {"Family", entry.family.text},     {"Model", entry.model.text},
            {"BaudRate", entry.baudRate.text}, {"DeviceSpecificString", entry.deviceSpecificString.text}};
}

}  // namespace tools
