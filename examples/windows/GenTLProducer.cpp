/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A GenTL producer that is loaded from its file
 */
#include "GenTLProducer.h"

#include <windows.h>

GenTLProducer::File::File(const std::string& path)
    : m_handle(LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
    if (m_handle == nullptr)
        throw std::runtime_error(path + " can't be loaded: error " + std::to_string(GetLastError()));
}

GenTLProducer::File::~File() {
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

void* GenTLProducer::File::Find(const char* name) const {
    if (const FARPROC function = GetProcAddress(static_cast<HMODULE>(m_handle), name))
        return reinterpret_cast<void*>(function);
    throw std::runtime_error(std::string("the producer lacks ") + name);
}
