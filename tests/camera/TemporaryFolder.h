/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders for tests
 */
#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

namespace CameraTest {

/// A folder of its own for each test, gone afterwards.
class TemporaryFolder {
public:
    TemporaryFolder()
        : m_path(std::filesystem::temp_directory_path() / ("camera-" + std::to_string(std::random_device{}()))) {
        if (!std::filesystem::create_directory(m_path))
            throw std::runtime_error("no temporary folder");
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace CameraTest
