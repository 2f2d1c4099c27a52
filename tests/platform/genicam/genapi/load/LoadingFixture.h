/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Files and archives to load descriptions from
 */
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "Support.h"
#include "archives/Archives.h"

namespace genapitest {

class Loading : public NodeMapTest {
protected:
    void SetUp() override {
        static int count = 0;
        m_folder = std::filesystem::temp_directory_path() /
                   ("genapi_test_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + "_" +
                    std::to_string(++count));
        std::filesystem::create_directories(m_folder);
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string File(const std::string& name, const std::string& content) {
        const std::filesystem::path path = m_folder / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
    std::string Missing(const std::string& name) const { return (m_folder / "missing" / name).string(); }
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
    std::filesystem::path m_folder;
};

}  // namespace genapitest
