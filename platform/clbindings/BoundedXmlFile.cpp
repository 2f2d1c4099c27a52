/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file for the XML library that is read up to a limit, and only when it is a plain file
 */

#include "clbindings/BoundedXmlFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <xercesc/util/BinInputStream.hpp>

#include "os/File.h"
#include "os/Path.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

[[noreturn]] void ThrowTooLong(const std::string& path) {
    throw VANTO_EXCEPTION(RuntimeException, kSource)(
        "Failed to parse CL binding file: '%s' is longer than the %u bytes that a port configuration may have.", path,
        BoundedXmlFile::kMaxSize);
}

[[noreturn]] void ThrowUnreadable(const std::string& path, int error) {
    throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to parse CL binding file: '%s' can't be read: %s.", path,
                                                     std::generic_category().message(error));
}

// The file may grow while it is read: what counts is what comes out of it.
class BoundedStream : public xercesc::BinInputStream {
public:
    BoundedStream(os::OpenFile file, const std::string& path) : m_file(std::move(file)), m_path(path) {}

    XMLFilePos curPos() const override { return m_read; }
    const XMLCh* getContentType() const override { return nullptr; }

    XMLSize_t readBytes(XMLByte* const buffer, const XMLSize_t size) override {
        const XMLSize_t count = std::fread(buffer, 1, size, m_file.get());
        // To the parser it would be the end of a file that is damaged.
        if (const int error = errno; std::ferror(m_file.get()) != 0)
            ThrowUnreadable(m_path, error);
        m_read += count;
        if (m_read > BoundedXmlFile::kMaxSize)
            ThrowTooLong(m_path);
        return count;
    }

private:
    os::OpenFile m_file;
    std::string m_path;
    XMLFilePos m_read = 0;
};

}  // namespace

/**
 * \brief Name a file; it is opened when the XML library asks for it
 * \param[in] path In the local code page
 * \throw RuntimeException It is something else than a plain file, whose reading may never end, or longer than kMaxSize
 */
BoundedXmlFile::BoundedXmlFile(const std::string& path)
    : LocalFileInputSource(FromLocalText(path).c_str()), m_path(path) {
    std::error_code unknown;
    const std::filesystem::path file = os::ToFilePath(path);
    const std::filesystem::file_status status = std::filesystem::status(file, unknown);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: '%s' is a folder or a device, not a file.", path);
    if (std::filesystem::is_regular_file(status) && std::filesystem::file_size(file, unknown) > kMaxSize && !unknown)
        ThrowTooLong(path);
}

/**
 * \brief Open the file
 * \return A stream that the caller deletes; null when there is no plain file any more or it can't be opened
 */
xercesc::BinInputStream* BoundedXmlFile::makeStream() const {
    os::OpenFile file = os::OpenPlainFile(m_path);
    return file ? std::make_unique<BoundedStream>(std::move(file), m_path).release() : nullptr;
}

}  // namespace Vanto
