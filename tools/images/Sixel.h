/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as control sequences of terminals
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tools {

/**
 * \brief Give an image as a sixel sequence, with at most 256 colours of its own
 * \param[in] rgb 3 bytes a pixel, row by row, of that width and height in pixels
 * \return With its beginning and end; empty on Windows, where no terminal is asked for it
 * \throw std::runtime_error It can't be encoded
 */
std::string SixelsOf(std::vector<std::uint8_t> rgb, std::size_t width, std::size_t height);

}  // namespace tools
