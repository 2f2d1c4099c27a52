/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Files and archives to load descriptions from
 */
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../../../../support/TemporaryFolder.h"
#include "Support.h"
#include "archives/Archives.h"

namespace genapitest {

class Loading : public NodeMapTest {
protected:
    std::string File(const std::string& name, const std::string& content) const {
        return m_folder.Write(name, content);
    }
    std::string Missing(const std::string& name) const { return m_folder / ("missing/" + name); }
    static std::string Archive(const std::vector<std::pair<std::string, std::string>>& files) { return MakeZip(files); }
    /// The text of the exception that refuses a description.
    std::string Refusal(const std::string& xml) {
        try {
            map._LoadXMLFromString(xml);
        } catch (const GenICam::RuntimeException& exception) {
            return exception.GetDescription();
        }
        return "loaded";
    }
    std::string FirstWarning() const {
        const GenApi::WarningList_t warnings = map._GetWarnings();
        if (warnings.empty())
            return "none";
        const GenApi::Warning& first = warnings.front();
        return std::to_string(first.Line) + "," + std::to_string(first.Column) + " " + first.Message.str();
    }

private:
    test_support::TemporaryFolder m_folder;
};

}  // namespace genapitest
