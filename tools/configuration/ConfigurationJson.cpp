/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port configuration entries and findings as JSON
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

Json ToJson(const Finding& finding) {
    return {{"Severity", SeverityName(finding.severity)},
            {"Line", finding.place.line},
            {"Column", finding.place.column},
            {"Text", finding.text},
            {"Hint", finding.hint}};
}

const char* SeverityName(Severity severity) {
    return severity == Severity::kError ? "error" : "warning";
}

}  // namespace tools
