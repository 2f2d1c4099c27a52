/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DLL as the loader sees it: what it exports, what it imports and its entry function
 */
#include "LoadedImage.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <stdexcept>

namespace Vanto {

namespace {

std::string Folded(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return name;
}

}  // namespace

LoadedImage::LoadedImage(const std::string& path) : m_module(::LoadLibraryA(path.c_str())) {
    if (m_module == nullptr)
        throw std::runtime_error("can't load " + path + ": error " + std::to_string(::GetLastError()));
}

LoadedImage::~LoadedImage() {
    ::FreeLibrary(m_module);
}

const IMAGE_OPTIONAL_HEADER64& LoadedImage::Header() const {
    const auto newHeader = static_cast<std::size_t>(At<IMAGE_DOS_HEADER>(0)->e_lfanew);
    return At<IMAGE_NT_HEADERS64>(newHeader)->OptionalHeader;
}

std::size_t LoadedImage::Directory(std::size_t number) const {
    return Header().DataDirectory[number].VirtualAddress;
}

std::set<std::string> LoadedImage::Exports() const {
    const auto* table = At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    std::set<std::string> names;
    for (DWORD index = 0; index < table->NumberOfNames; ++index)
        names.insert(At<char>(At<DWORD>(table->AddressOfNames)[index]));
    return names;
}

std::map<std::string, std::set<std::string>> LoadedImage::Imports() const {
    std::map<std::string, std::set<std::string>> imports;
    const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
    for (; library->Name != 0; ++library) {
        std::set<std::string>& names = imports[Folded(At<char>(library->Name))];
        for (const auto* entry = At<IMAGE_THUNK_DATA64>(library->OriginalFirstThunk); entry->u1.AddressOfData != 0;
             ++entry) {
            if (!IMAGE_SNAP_BY_ORDINAL64(entry->u1.Ordinal))
                names.insert(At<IMAGE_IMPORT_BY_NAME>(static_cast<std::size_t>(entry->u1.AddressOfData))->Name);
        }
    }
    return imports;
}

bool LoadedImage::Notify(DWORD reason) const {
    using Entry = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);
    const char* const entry = At<char>(Header().AddressOfEntryPoint);
    return reinterpret_cast<Entry>(reinterpret_cast<std::uintptr_t>(entry))(m_module, reason, nullptr) != FALSE;
}

}  // namespace Vanto
