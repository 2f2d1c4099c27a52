/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of frames that are saved beside the grab
 */
#include "images/FrameSaver.h"

#include <gtest/gtest.h>

#include <array>
#include <deque>

#include "Base/GCException.h"
#include "system/Folders.h"

namespace {

using namespace tools;
namespace fs = std::filesystem;

class FrameSaverTest : public testing::Test {
protected:
    FrameImage Frame(std::uint8_t grey) {
        m_pixels.emplace_back().fill(grey);
        FrameImage image;
        image.view = {.data = m_pixels.back().data(),
                      .size = m_pixels.back().size(),
                      .pixelType = Vanto::PixelType_Mono8,
                      .width = 4,
                      .height = 2};
        return image;
    }
    fs::path Folder() const { return m_folder.Path() / "images"; }

private:
    TemporaryFolder m_folder;
    std::deque<std::array<std::uint8_t, 8>> m_pixels;
};

TEST_F(FrameSaverTest, KeepsEachFrameAsItCame) {
    FrameFiles files("raw", Folder());
    FrameSaver saver(files, 4, 2);
    for (std::uint8_t grey = 0; grey < 200; ++grey)
        saver.Save(Frame(grey), {});
    saver.Finish();
    EXPECT_EQ(files.Count(), 200U);
    EXPECT_EQ(files.First().filename(), "frame_000001.raw");
    EXPECT_EQ(files.Last().filename(), "frame_000200.raw");
    for (const int number : {1, 100, 200}) {
        char name[32];
        std::snprintf(name, sizeof name, "frame_%06d.raw", number);
        std::FILE* const file = std::fopen((Folder() / name).string().c_str(), "rb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(std::fgetc(file), number - 1);
        std::fclose(file);
    }
}

TEST_F(FrameSaverTest, SavesWhatItHasWhenItIsDestroyed) {
    FrameFiles files("pgm", Folder());
    {
        FrameSaver saver(files, 1, 50);
        for (int count = 0; count < 50; ++count)
            saver.Save(Frame(1), {});
    }
    EXPECT_EQ(files.Count(), 50U);
}

TEST_F(FrameSaverTest, TellsWhatWentWrong) {
    FrameFiles files("pgm", Folder());
    FrameSaver saver(files, 2, 2);
    fs::create_directories(Folder() / "frame_000001.pgm");
    saver.Save(Frame(1), {});
    EXPECT_THROW(saver.Finish(), GenICam::GenericException);
    EXPECT_EQ(files.Count(), 0U);
}

TEST_F(FrameSaverTest, DoesNotWaitForPlacesBehindAFailure) {
    FrameFiles files("pgm", Folder());
    FrameSaver saver(files, 1, 1);
    fs::create_directories(Folder() / "frame_000001.pgm");
    const auto saveMany = [&] {
        for (int count = 0; count < 1000; ++count)
            saver.Save(Frame(1), {});
        saver.Finish();
    };
    EXPECT_THROW(saveMany(), GenICam::GenericException);
}

}  // namespace
