/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is said about an image that the disk has no room for
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "../../TestSupport.h"
#include "Base/GCException.h"
#include "vanto/ImageWriter.h"

namespace {

using namespace Vanto;

void WriteToFullDisk(EImageFileFormat format) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("/dev/full", folder / "image.part");
    const std::vector<std::uint8_t> bytes(100'000, 1);
    try {
        WriteImage(folder / "image", format, {bytes.data(), bytes.size(), PixelType_Mono8, 1000, 100, 0});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const GenICam::RuntimeException& error) {
        EXPECT_THAT(error.GetDescription(), testing::HasSubstr("/image' can't be written: No space left on device"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "image"));
}

TEST(FullDisk, IsTheReasonForEveryFormat) {
    WriteToFullDisk(EImageFileFormat::kPng);
    WriteToFullDisk(EImageFileFormat::kPnm);
    WriteToFullDisk(EImageFileFormat::kTiff);
    WriteToFullDisk(EImageFileFormat::kRaw);
}

}  // namespace
