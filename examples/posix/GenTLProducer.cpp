/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A GenTL producer that is loaded from its file
 */
#include "GenTLProducer.h"

#include <dlfcn.h>

GenTLProducer::File::File(const std::string& path) : m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (m_handle == nullptr)
        throw std::runtime_error(dlerror());
}

GenTLProducer::File::~File() {
    dlclose(m_handle);
}

void* GenTLProducer::File::Find(const char* name) const {
    if (void* const function = dlsym(m_handle, name))
        return function;
    throw std::runtime_error(std::string("the producer lacks ") + name);
}
