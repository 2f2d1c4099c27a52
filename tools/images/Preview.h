/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A picture in the terminal
 */
#pragma once

#include <cstdint>
#include <vector>

namespace tools {

class Output;

/**
 * \brief Draw an image in the terminal
 * \param[in] pnm As Vanto::AppendPnm makes it, of that width and height in pixels
 *
 * As a sixel image where the terminal says that it shows them; else two pixels above each other in a character, and
 * without colours as letters from dark to bright.
 */
void PrintPreview(Output& output, const std::vector<std::uint8_t>& pnm, std::uint32_t width, std::uint32_t height);

}  // namespace tools
