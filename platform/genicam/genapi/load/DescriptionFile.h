/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in files: plain or in a ZIP archive
 */
#pragma once

#include <cstddef>
#include <string>

namespace GenApi {

/// The text of a file, taken out of the archive when it is one. Throws RuntimeException.
std::string ReadDescriptionFile(const std::string& fileName);
/// The first XML file of an archive in memory, or else the first file. Throws RuntimeException.
std::string UnzipDescription(const void* data, std::size_t size, const std::string& name);

}  // namespace GenApi
