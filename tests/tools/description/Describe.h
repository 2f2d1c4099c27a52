/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions for tests of the linter
 */
#pragma once

#include <string>

namespace tools_test {

/// A description with these nodes; Root holds the feature A. The first of them stands in line 4.
inline std::string Describe(const std::string& nodes, const std::string& features = "<pFeature>A</pFeature>") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<RegisterDescription ModelName=\"M\" VendorName=\"V\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" "
           "SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" "
           "SubMinorVersion=\"0\" ToolTip=\"T\" ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
           "VersionGuid=\"22222222-2222-2222-2222-222222222222\" "
           "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n<Category Name=\"Root\">" +
           features + "</Category>\n" + nodes + "\n<Port Name=\"Device\"/>\n</RegisterDescription>";
}

}  // namespace tools_test
