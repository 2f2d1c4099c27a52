/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and files that only the system can name, on Windows
 */
#include "system/Folders.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <array>
#include <string>
#include <system_error>

#include "system/Environment.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr DWORD kLongestPath = 32768;
constexpr int kMostAttempts = 1000;

}  // namespace

std::filesystem::path OwnProgram() {
    std::wstring path(kLongestPath, L'\0');
    path.resize(::GetModuleFileNameW(nullptr, path.data(), kLongestPath));
    return path;
}

std::optional<std::filesystem::path> StateFolder() {
    if (const std::string own = GetEnvironment("VANTO_CL_STATE").value_or(std::string()); !own.empty())
        return PathOf(own);
    std::array<wchar_t, MAX_PATH> path{};
    if (::SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK)
        return std::nullopt;
    return std::filesystem::path(path.data()) / "Vanto";
}

/**
 * \brief Make the folder below the user's folder for temporary files, which others can't enter
 * \throw std::system_error The system refuses
 */
TemporaryFolder::TemporaryFolder() {
    const std::filesystem::path parent = std::filesystem::temp_directory_path();
    const std::string name = "vanto-cl-" + std::to_string(::GetCurrentProcessId()) + "-";
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        m_path = parent / (name + std::to_string(::GetTickCount64() + static_cast<ULONGLONG>(attempt)));
        if (::CreateDirectoryW(m_path.c_str(), nullptr) != 0)
            return;
        if (::GetLastError() != ERROR_ALREADY_EXISTS)
            break;
    }
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                            "can't make a temporary folder " + m_path.string());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace tools
