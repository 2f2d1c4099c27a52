/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file for the XML library that is read up to a limit, and only when it is a plain file
 */
#pragma once

#include <cstdint>
#include <string>
#include <xercesc/framework/LocalFileInputSource.hpp>

namespace Vanto {

/// Opens the file by the bytes of its path, so that no locale decides which paths can be opened. Reentrant.
class BoundedXmlFile : public xercesc::LocalFileInputSource {
public:
    static constexpr std::uint64_t kMaxSize = 1u << 20;

    explicit BoundedXmlFile(const std::string& path);
    xercesc::BinInputStream* makeStream() const override;

private:
    std::string m_path;
};

}  // namespace Vanto
