/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What several tests need: folders, files and the environment
 */
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "os/Environment.h"
#include "os/Path.h"

/// A path as this system writes it.
inline std::string Native(const std::string& path) {
    return os::ToSystemSeparators(path);
}

/// A folder of its own that vanishes with it.
class TempFolder {
public:
    TempFolder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("vanto-" + std::to_string(std::random_device()()) + "-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path(const std::string& name = "") const {
        return name.empty() ? m_path.string() : (m_path / Native(name)).string();
    }
    std::string Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
        return Path(name);
    }

private:
    std::filesystem::path m_path;
};

/// Sets an environment variable and puts it back.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::string& value) : m_name(name), m_old(os::GetEnvironment(name)) {
        os::SetEnvironment(name, value);
    }
    ~ScopedEnvironment() {
        if (m_old.status == os::EnvironmentStatus::kAbsent)
            os::UnsetEnvironment(m_name);
        else
            os::SetEnvironment(m_name, m_old.text);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const char* m_name;
    os::EnvironmentValue m_old;
};
