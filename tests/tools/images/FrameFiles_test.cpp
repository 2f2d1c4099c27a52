/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which frames are saved, where and under which names
 */
#include "images/FrameFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>

#include "Base/GCException.h"
#include "error/ExitCode.h"
#include "system/Folders.h"

namespace {

using namespace tools;
namespace fs = std::filesystem;

/// Saves 4 x 2 pixels of one byte.
class FrameFilesTest : public testing::Test {
protected:
    FrameImage Frame() const {
        FrameImage image;
        image.view = {.data = m_pixels.data(),
                      .size = m_pixels.size(),
                      .pixelType = Vanto::PixelType_Mono8,
                      .width = 4,
                      .height = 2};
        return image;
    }
    FrameImage CutFrame() const {
        FrameImage image = Frame();
        image.view.size = 5;
        image.isCut = true;
        return image;
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

TEST_F(FrameFilesTest, AreNeverMixedWithThoseOfAnEarlierGrab) {
    fs::create_directories(Folder());
    for (const char* name : {"frame_000007.png", "frame_000001.raw", "frame_000001.json"})
        std::ofstream(Folder() / name) << "an earlier frame";
    EXPECT_THROW(FrameFiles("raw", Folder()), ToolError);
    EXPECT_TRUE(fs::exists(Folder() / "frame_000007.png"));
    FrameFiles files("pgm", Folder(), true);
    EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(FrameFilesTest, LeaveOtherFilesAlone) {
    fs::create_directories(Folder() / "frame_000003.d");
    for (const char* name : {"frame.png", "frame_1.png", "my_frame_000001.png", "frame_0000012"})
        std::ofstream(Folder() / name) << "a file of the user";
    FrameFiles files("pgm", Folder());
    FrameFiles again("pgm", Folder(), true);
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()), 5);
}

TEST_F(FrameFilesTest, OfRawBytesHaveTheirSizeBeside) {
    FrameFiles files("raw", Folder());
    files.Save(Frame(),
               {.camera = "Marlow", .serialNumber = "S0", .exposureTime = "5 us", .frameNumber = "9", .time = "t"});
    std::ifstream side(Folder() / "frame_000001.json");
    const std::string text{std::istreambuf_iterator<char>(side), {}};
    for (const char* line : {"\"Width\": 4", "\"Height\": 2", "\"PixelFormat\": \"Mono8\"", "\"Pitch\": 4",
                             "\"SerialNumber\": \"S0\"", "\"FrameNumber\": \"9\""})
        EXPECT_THAT(text, testing::HasSubstr(line));
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
