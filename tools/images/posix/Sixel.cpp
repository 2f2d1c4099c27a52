/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as control sequences of terminals
 */
#include "images/Sixel.h"

#include <sixel.h>

#include <memory>
#include <stdexcept>

namespace tools {

namespace {

constexpr int kColours = 256;
constexpr int kBytesPerPixel = 3;

struct Unref {
    void operator()(sixel_output_t* output) const noexcept { sixel_output_unref(output); }
    void operator()(sixel_dither_t* dither) const noexcept { sixel_dither_unref(dither); }
};

void Check(SIXELSTATUS status) {
    if (SIXEL_FAILED(status))
        throw std::runtime_error(std::string("the image can't be shown: ") + sixel_helper_format_error(status));
}

/// Called from C: nothing may be thrown through it. What fits no memory is lacking in the text.
int Append(char* data, int size, void* text) noexcept {
    try {
        static_cast<std::string*>(text)->append(data, static_cast<std::size_t>(size));
        return size;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

}  // namespace

std::string SixelsOf(std::vector<std::uint8_t> rgb, std::size_t width, std::size_t height) {
    std::string text;
    const int columns = static_cast<int>(width);
    const int rows = static_cast<int>(height);
    sixel_output_t* newOutput = nullptr;
    Check(sixel_output_new(&newOutput, &Append, &text, nullptr));
    const std::unique_ptr<sixel_output_t, Unref> output(newOutput);
    sixel_dither_t* newDither = nullptr;
    Check(sixel_dither_new(&newDither, kColours, nullptr));
    const std::unique_ptr<sixel_dither_t, Unref> dither(newDither);
    Check(sixel_dither_initialize(dither.get(), rgb.data(), columns, rows, SIXEL_PIXELFORMAT_RGB888, SIXEL_LARGE_AUTO,
                                  SIXEL_REP_AUTO, SIXEL_QUALITY_AUTO));
    Check(sixel_encode(rgb.data(), columns, rows, kBytesPerPixel, dither.get(), output.get()));
    return text;
}

}  // namespace tools
