/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of FrameStream and Frame: frames that come, are held, go back, and are lost
 */

#include "vanto/FrameStream.h"

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

#include "tests/application/ApplicationTest.h"

namespace {

using application::ApplicationTest;
using application::Camera;
using application::HasSubstr;
using application::Thrown;
using std::chrono::milliseconds;

class Frames : public ApplicationTest {
protected:
    Frames() {
        camera->Set("Width", 64);
        camera->Set("Height", 32);
    }
    std::optional<Vanto::Camera> camera{std::in_place};
};

TEST_F(Frames, ComeAsManyAsAreWanted) {
    std::uint64_t count = 0;
    for (const Vanto::Frame& frame : camera->Grab(10)) {
        ++count;
        EXPECT_TRUE(frame.IsComplete());
        EXPECT_GE(frame.Number(), count);
        EXPECT_EQ(frame.Width(), 64u);
        EXPECT_EQ(frame.Height(), 32u);
        EXPECT_EQ(frame.Size(), 64u * 32u);
        EXPECT_EQ(frame.PixelFormat(), "Mono8");
        EXPECT_EQ(frame.BitsPerPixel(), 8u);
        EXPECT_NE(frame.Data(), nullptr);
    }
    EXPECT_EQ(count, 10u);
}

TEST_F(Frames, AreNoneWhenNoneAreWanted) {
    for (const Vanto::Frame& frame : camera->Grab(0))
        FAIL() << frame.Number();
}

TEST_F(Frames, MayAllBeHeld) {
    std::vector<Vanto::Frame> frames;
    for (const Vanto::Frame& frame : camera->Grab(50))
        frames.push_back(frame);
    ASSERT_EQ(frames.size(), 50u);
    std::set<const std::uint8_t*> places;
    for (const Vanto::Frame& frame : frames)
        places.insert(frame.Data());
    EXPECT_EQ(places.size(), 50u);
}

TEST_F(Frames, GiveTheirBufferBackWhenTheLastHolderLetsGo) {
    Vanto::StreamOptions options;
    options.buffers = 2;
    Vanto::FrameStream stream = camera->Stream(options);
    std::set<const std::uint8_t*> places;
    for (int taken = 0; taken < 50; ++taken) {
        const auto frame = stream.Next();
        const Vanto::Frame copy = *frame;
        places.insert(copy.Data());
    }
    EXPECT_LE(places.size(), 4u);
}

TEST_F(Frames, OutliveStreamAndCamera) {
    std::optional<Vanto::Frame> frame;
    {
        Vanto::FrameStream stream = camera->Stream();
        frame = stream.Next();
    }
    camera.reset();
    const std::vector<std::uint8_t> pixels(frame->Data(), frame->Data() + frame->Size());
    EXPECT_EQ(pixels.size(), 64u * 32u);
}

TEST_F(Frames, DoNotKeepTheCameraOpen) {
    const Vanto::Frame frame = camera->GrabOne();
    camera.reset();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
    const Vanto::Camera again;
    EXPECT_TRUE(again.GrabOne().IsComplete());
}

TEST_F(Frames, EndWithTheStream) {
    Vanto::FrameStream stream = camera->Stream();
    EXPECT_TRUE(stream.Next());
    stream.Stop();
    stream.Stop();
    EXPECT_FALSE(stream.Next());
    EXPECT_FALSE(stream.TryNext());
    EXPECT_FALSE(stream.IsRunning());
}

TEST_F(Frames, ComeFromOneStreamAtATime) {
    Vanto::FrameStream stream = camera->Stream();
    EXPECT_THAT(Thrown<Vanto::GrabError>([&] { camera->Stream(); }).what(), HasSubstr("takes frames already"));
    stream.Stop();
    EXPECT_TRUE(camera->GrabOne().IsComplete());
}

TEST_F(Frames, LeaveNoWarningInTheLog) {
    m_log.Clear();
    {
        Vanto::FrameStream stream = camera->Stream();
        const auto held = stream.Next();
        EXPECT_TRUE(held);
    }
    for (const auto& message : m_log.GetMessages())
        EXPECT_LT(message.level, integration::kWarning) << message.text;
}

TEST_F(Frames, LockWhatWouldChangeTheirSize) {
    const Vanto::FrameStream stream = camera->Stream();
    EXPECT_THROW(camera->Set("Width", 128), Vanto::FeatureNotAccessible);
}

TEST_F(Frames, ThatAreLostAreCountedAndTold) {
    Vanto::StreamOptions options;
    options.buffers = 1;
    Vanto::FrameStream stream = camera->Stream(options);
    std::uint64_t missed = 0;
    for (std::uint64_t last = 0; missed == 0;) {
        std::this_thread::sleep_for(milliseconds(20));  // several frames at 200 a second
        const auto frame = stream.Next();
        missed += frame->Missed();
        EXPECT_EQ(frame->Number(), last + 1 + frame->Missed());
        last = frame->Number();
    }
    EXPECT_EQ(stream.Counts().missed, missed);
    EXPECT_GT(stream.Counts().delivered, 1u);
}

TEST_F(Frames, ThatDoNotComeAreATimeout) {
    camera->Set("TriggerMode", "On");
    Vanto::FrameStream stream = camera->Stream();
    while (stream.TryNext()) {
    }
    EXPECT_THAT(Thrown<Vanto::CameraTimeout>([&] {
                    for (;;)
                        stream.Next(milliseconds(1));
                }).what(),
                HasSubstr("no frame came in time"));
}

TEST_F(Frames, StopToBeWaitedForWhenTheCheckSaysSo) {
    camera->SetStopCheck([] { return true; });
    Vanto::FrameStream stream = camera->Stream();
    EXPECT_THROW(for (;;) stream.Next(), Vanto::Interrupted);
}

TEST_F(Frames, EndInOtherThreadsWhenTheCameraIsClosed) {
    Vanto::FrameStream stream = camera->Stream();
    std::atomic<bool> taken{false};
    std::thread taker([&] {
        while (stream.Next())
            taken = true;
    });
    while (!taken)
        std::this_thread::yield();
    camera->Close();
    taker.join();
}

TEST_F(Frames, AreSharedBetweenThreads) {
    Vanto::StreamOptions options;
    options.count = 60;
    Vanto::FrameStream stream = camera->Stream(options);
    std::atomic<int> taken{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([&] {
            while (stream.Next())
                ++taken;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(taken, 60);
}

TEST_F(Frames, AreGivenBackWhileTheStreamStops) {
    for (int round = 0; round < 10; ++round) {
        Vanto::FrameStream stream = camera->Stream();
        std::vector<Vanto::Frame> frames;
        while (frames.size() < 10)
            frames.push_back(*stream.Next());
        std::jthread giver([&] { frames.clear(); });
        stream.Stop();
    }
    EXPECT_TRUE(camera->GrabOne().IsComplete());
}

TEST_F(Frames, AreHandedToACallback) {
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
    auto subscription = camera->OnFrame([&](Vanto::Frame& frame) {
        EXPECT_TRUE(frame.IsComplete());
        const std::lock_guard lock(mutex);
        ++count;
        changed.notify_one();
    });
    std::unique_lock lock(mutex);
    EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return count >= 5; }));
    lock.unlock();
    subscription.Cancel();
    EXPECT_TRUE(camera->GrabOne().IsComplete());
}

TEST_F(Frames, MayEndInTheirOwnCallback) {
    Vanto::Subscription subscription;
    std::mutex mutex;
    std::atomic<int> calls{0};
    {
        const std::lock_guard lock(mutex);
        subscription = camera->OnFrame([&](Vanto::Frame&) {
            const std::lock_guard inner(mutex);
            ++calls;
            subscription.Cancel();
        });
    }
    while (calls == 0)
        std::this_thread::yield();
    const std::lock_guard lock(mutex);
    EXPECT_EQ(calls, 1);
}

TEST_F(Frames, EndWithTheErrorOfACallback) {
    std::atomic<bool> failed{false};
    const auto subscription = camera->OnFrame([](Vanto::Frame&) { throw std::runtime_error("enough"); },
                                              [&](const std::exception_ptr& failure) {
                                                  EXPECT_THROW(std::rethrow_exception(failure), std::runtime_error);
                                                  failed = true;
                                              });
    while (!failed)
        std::this_thread::yield();
}

TEST_F(Frames, AreSavedInTheFormatOfTheName) {
    const Vanto::Frame frame = camera->GrabOne();
    for (const char* name : {"a.png", "b.PGM", "c.tiff", "d.raw"}) {
        const std::string path = (std::filesystem::path(m_folder.Path()) / name).string();
        frame.Save(path);
        EXPECT_GT(std::filesystem::file_size(path), 100u) << name;
    }
    EXPECT_THAT(Thrown<Vanto::CameraError>([&] { frame.Save("a.gif"); }).what(), HasSubstr("names no image format"));
    const auto elsewhere = std::filesystem::path(m_folder.Path()) / "no" / "a.png";
    EXPECT_THROW(frame.Save(elsewhere.string()), Vanto::CameraError);
}

TEST_F(Frames, AreSavedByTheCameraAtOnce) {
    const std::string path = (std::filesystem::path(m_folder.Path()) / "one.pgm").string();
    camera->SaveImage(path);
    EXPECT_EQ(std::filesystem::file_size(path), std::string("P5\n64 32\n255\n").size() + 64 * 32);
    EXPECT_THROW(camera->SaveImage("a.gif"), Vanto::CameraError);
}

TEST(FramesWithoutAFrameGrabber, AreRefusedWithTheReason) {
    class Bare : public integration::Machine {
        void TestBody() override {}

    public:
        Bare() { Add("cam0", Camera("21")); }
    };
    const Bare machine;
    const Vanto::Camera camera;
    const auto error = Thrown<Vanto::GrabError>([&] { camera.GrabOne(); });
    EXPECT_THAT(error.what(), HasSubstr("has no frame grabber: No DeviceSpecificString in device info."));
}

}  // namespace
