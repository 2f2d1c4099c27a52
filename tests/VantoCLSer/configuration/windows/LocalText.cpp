/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts in the code page of Windows
 */
#include "../LocalText.h"

#include <windows.h>

namespace clser_test {

std::string LocalText(const std::string& utf8) {
    std::wstring wide(utf8.size(), L'\0');
    wide.resize(static_cast<std::size_t>(::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()),
                                                               wide.data(), static_cast<int>(wide.size()))));
    std::string local(4 * wide.size(), '\0');
    local.resize(static_cast<std::size_t>(::WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                                                local.data(), static_cast<int>(local.size()), nullptr,
                                                                nullptr)));
    return local;
}

}  // namespace clser_test
