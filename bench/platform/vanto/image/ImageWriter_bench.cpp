/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How much of an image one core writes in a second, by format: a camera's rate must be below that times the cores
 *
 * The image has what encoders find hard in those of cameras: a slope with noise on it.
 */
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <vector>

#include "vanto/ImageWriter.h"

namespace {

constexpr std::uint32_t kWidth = 2048;
constexpr std::uint32_t kHeight = 1024;

std::vector<std::uint8_t> NoisySlope() {
    std::mt19937 random(1);
    std::vector<std::uint8_t> pixels;
    for (std::uint32_t row = 0; row < kHeight; ++row)
        for (std::uint32_t column = 0; column < kWidth; ++column)
            pixels.push_back(static_cast<std::uint8_t>((row + column) / 16 + random() % 6));
    return pixels;
}

void Write(benchmark::State& state, Vanto::EImageFileFormat format) {
    const std::vector<std::uint8_t> pixels = NoisySlope();
    const Vanto::ImageView image{.data = pixels.data(),
                                 .size = pixels.size(),
                                 .pixelType = Vanto::PixelType_Mono8,
                                 .width = kWidth,
                                 .height = kHeight};
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "vanto-image-bench";
    for (auto _ : state)
        Vanto::WriteImage(path.string(), format, image);
    const auto bytes = static_cast<double>(std::filesystem::file_size(path));
    std::filesystem::remove(path);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(pixels.size()));
    state.counters["size"] = bytes / static_cast<double>(pixels.size());
}

BENCHMARK_CAPTURE(Write, Png, Vanto::EImageFileFormat::kPng)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, Tiff, Vanto::EImageFileFormat::kTiff)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, Pnm, Vanto::EImageFileFormat::kPnm)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, Raw, Vanto::EImageFileFormat::kRaw)->Unit(benchmark::kMillisecond);

}  // namespace
