/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a place to write in
 */
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace test_support {

/// A new empty folder below the system's temporary folder, removed with all that is in it. Names in it are given with
/// '/', paths come back as this system writes them.
class TemporaryFolder {
public:
    TemporaryFolder() { std::filesystem::create_directory(m_path); }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const std::string& name) const {
        // As text: a std::filesystem::path of Windows reads narrow names in another encoding than it gives them back.
        std::string path = m_path + '/' + name;
        std::replace(path.begin(), path.end(), '/', static_cast<char>(std::filesystem::path::preferred_separator));
        return path;
    }
    /// Makes the folders on the way as well; returns the path.
    std::string Write(const std::string& name, const std::string& content) const {
        const std::string path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(std::filesystem::path(path), std::ios::binary) << content;
        return path;
    }

private:
    static std::string NewName() {
        std::random_device random;
        return "vanto-test-" + std::to_string(random()) + "-" + std::to_string(random());
    }

    const std::string m_path = (std::filesystem::temp_directory_path() / NewName()).string();
};

}  // namespace test_support
