/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which frames are saved, where and under which names
 */
#include "images/FrameFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>

#include "Base/GCException.h"
#include "error/ExitCode.h"
#include "system/Folders.h"

namespace {

using namespace tools;
namespace fs = std::filesystem;

/// Saves 4 x 2 pixels of one byte.
class FrameFilesTest : public testing::Test {
protected:
    Vanto::GrabResult Frame() {
        Vanto::GrabResult result;
        result.status = Vanto::Grabbed;
        result.buffer = m_pixels.data();
        result.width = 4;
        result.height = 2;
        result.pixelType = Vanto::PixelType_Mono8;
        result.payloadSize = m_pixels.size();
        return result;
    }
    Vanto::GrabResult CutFrame() {
        Vanto::GrabResult result = Frame();
        result.payloadSize = 5;
        return result;
    }
    fs::path Folder() const { return m_folder.Path() / "a" / "b"; }

private:
    TemporaryFolder m_folder;
    std::array<std::uint8_t, 8> m_pixels{};
};

TEST_F(FrameFilesTest, AreNumberedInAFolderThatIsMade) {
    FrameFiles files("pgm", Folder());
    for (int count = 0; count < 3; ++count)
        files.Save(Frame());
    EXPECT_EQ(files.Count(), 3U);
    EXPECT_EQ(files.First(), Folder() / "frame_000001.pgm");
    EXPECT_EQ(files.Last(), Folder() / "frame_000003.pgm");
    EXPECT_TRUE(fs::exists(Folder() / "frame_000002.pgm"));
}

TEST_F(FrameFilesTest, OfThePresentFolderHaveBareNames) {
    fs::create_directories(Folder());
    fs::current_path(Folder());
    FrameFiles files("raw", ".");
    files.Save(Frame());
    EXPECT_EQ(files.First().string(), "frame_000001.raw");
    EXPECT_TRUE(fs::exists(Folder() / "frame_000001.raw"));
    fs::current_path("/");
}

TEST_F(FrameFilesTest, ReplaceThoseOfAnEarlierGrab) {
    fs::create_directories(Folder());
    std::ofstream(Folder() / "frame_000001.raw") << "an earlier and longer frame";
    FrameFiles files("raw", Folder());
    files.Save(Frame());
    EXPECT_EQ(fs::file_size(files.First()), 8U);
}

TEST_F(FrameFilesTest, AreOnlyThoseThatCouldBeWritten) {
    FrameFiles files("raw", Folder());
    files.Save(Frame());
    fs::create_directories(Folder() / "frame_000002.raw");
    EXPECT_THROW(files.Save(Frame()), GenICam::GenericException);
    EXPECT_EQ(files.Count(), 1U);
    EXPECT_EQ(files.Last(), files.First());
}

TEST_F(FrameFilesTest, OfCutFramesAreRaw) {
    FrameFiles pictures("png", Folder());
    pictures.Save(CutFrame());
    EXPECT_EQ(pictures.Count(), 0U);
    FrameFiles bytes("raw", Folder());
    bytes.Save(CutFrame());
    EXPECT_EQ(fs::file_size(bytes.First()), 5U);
}

TEST_F(FrameFilesTest, NeedAFolderOnlyWhereSomethingIsSaved) {
    FrameFiles files("none", Folder());
    files.Save(Frame());
    EXPECT_FALSE(fs::exists(Folder()));
}

TEST_F(FrameFilesTest, RefuseAFolderThatIsAFile) {
    fs::create_directories(Folder().parent_path());
    std::ofstream(Folder()) << "not a folder";
    EXPECT_THROW(FrameFiles("png", Folder()), ToolError);
}

TEST_F(FrameFilesTest, RefusePixelsThatTheFormatDoesNotHave) {
    const FrameFiles files("png", Folder());
    EXPECT_NO_THROW(files.CheckPixelType(Vanto::PixelType_RGB8));
    EXPECT_THROW(files.CheckPixelType(Vanto::PixelType_Undefined), ToolError);
    EXPECT_NO_THROW(FrameFiles("raw", Folder()).CheckPixelType(Vanto::PixelType_Undefined));
}

}  // namespace
