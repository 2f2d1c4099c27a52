/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in files: plain or in a ZIP archive
 */

#include "load/DescriptionFile.h"

#include <fstream>
#include <utility>

#include "Base/GCException.h"
#include "base/Stream.h"
#include "base/Zip.h"
#include "load/Loader.h"

namespace GenApi {

std::string UnzipDescription(const void* data, std::size_t size, const std::string& name) {
    if (data == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("%s: null archive", name);
    try {
        return base::UnzipDescription({static_cast<const char*>(data), size});
    } catch (const base::ZipError& error) {
        throw RUNTIME_EXCEPTION("%s(1,1): the ZIP archive can't be unpacked: %s", name, error.what());
    }
}

std::string ReadDescriptionFile(const std::string& fileName) {
    // Not by a path, which takes a text for UTF-8 on Windows, whatever the code page in use.
    std::ifstream file(fileName, std::ios::binary);
    if (!file)
        throw RUNTIME_EXCEPTION("%s(1,1): the file can't be opened", fileName);
    std::optional<std::string> text = base::ReadAll(file, kMaxDescription);
    if (!text)
        throw RUNTIME_EXCEPTION("%s(1,1): the file is too large", fileName);
    if (file.bad())
        throw RUNTIME_EXCEPTION("%s(1,1): the file can't be read", fileName);
    return base::IsZip(*text) ? UnzipDescription(text->data(), text->size(), fileName) : *std::move(text);
}

}  // namespace GenApi
