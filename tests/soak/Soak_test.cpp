/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Four cameras grabbing, changing features, being enumerated and unplugged at once, and one of them on a bad line
 */

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <thread>

#include "FrameMark.h"
#include "tests/integration/Machine.h"
#include "tests/integration/Resources.h"
#include "vanto/DeviceRemovalCallback.h"
#include "vanto/StreamGrabber.h"

namespace integration {
namespace {

using GenICam::GenericException;
using Vanto::GrabResult;
using Vanto::IStreamGrabber;
using Vanto::IVantoDevice;
using Vanto::StreamBufferHandle;

constexpr int kCameras = 4;
constexpr int kBadLine = 2;  // the camera whose line loses and damages packets
constexpr std::size_t kBuffers = 4;
constexpr std::uint64_t kFrames = 200;
constexpr std::uint32_t kPatience = 60000;                        // milliseconds
constexpr std::size_t kGrowth = std::size_t{16} << 20;            // bytes that the heap's own habits may make
constexpr std::size_t kSanitizedGrowth = std::size_t{512} << 20;  // freed memory is kept back there

std::chrono::seconds Duration() {
    const char* const given = std::getenv("VANTO_SOAK_SECONDS");
    return std::chrono::seconds(given != nullptr ? std::atoi(given) : 60);
}

std::size_t ResidentBytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::size_t kilobytes = 0;
        if (word == "VmRSS:" && status >> kilobytes)
            return kilobytes << 10;
    }
    return 0;
}

constexpr std::size_t MostGrowth() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return kSanitizedGrowth;
#else
    return kGrowth;
#endif
}

constexpr char kUndisturbed[] = "(undisturbed) ";

/// What went wrong, by kind. Thread-safe.
class Kinds {
public:
    void Note(const std::string& kind, bool isDisturbed) {
        const std::lock_guard lock(m_mutex);
        ++m_counts[(isDisturbed ? "" : kUndisturbed) + kind];
    }
    std::map<std::string, std::uint64_t> Get() const {
        const std::lock_guard lock(m_mutex);
        return m_counts;
    }

private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::uint64_t> m_counts;
};

/// An exception without what differs from one to the other: what is quoted, numbers, and the place in the code.
std::string KindOf(const GenericException& error) {
    static const std::regex kQuoted("'[^']*'|0x[0-9a-fA-F]+|[0-9]+");
    return std::regex_replace(std::string(error.GetDescription()).substr(0, 300), kQuoted, "_");
}

/// What may go wrong, and why: a cable was pulled, or the line is bad. Every other kind is a fault, and so are these
/// where nothing of that has happened since the turn began, but for the few that a busy machine makes.
constexpr std::array kExpected = {
    "frame: Failed to retrieve result specific data from device nodemap.",  // the frame came, the camera does not tell
    "feature: Device _ already removed/disconnected.",
    "feature: Port _: function _ of _ failed",                        // the access that finds it out
    "grab: ",                                                         // the same, while the grab is begun or ended
    "turn: No device contains the provided device info properties.",  // enumeration did not find it
    "turn: Could not open CLPort",
    "turn: Could not reopen CLPort",  // the same, where an access finds it closed
    "turn: Could not get XML for device",
    "turn: Device creation failed.",
    "turn: The simulated grabber does not know the camera's pixel format",  // it could not be read
    "turn: Device _ already removed/disconnected.",
    "turn: Port _: function _ of _ failed",
};

// What lasts longer than the turn that it began in: a port whose camera was pulled while it was being looked for keeps
// it until the transport layer is made anew; features go on being changed on a camera that has gone.
constexpr std::array kLastsLonger = {"turn: Could not open CLPort", "feature: Device _ already removed/disconnected."};

// Threads of the test, of four cameras and of whatever else the machine does share two processors: now and then one
// does not run for longer than the driver waits for an answer. An enumeration that began while a cable was out may end
// in the next turn, too.
constexpr std::uint64_t kMostUndisturbedPerMinute = 2;

bool IsAmong(const auto& kinds, std::string_view kind) {
    return std::ranges::any_of(kinds, [&](const char* one) { return kind.starts_with(one); });
}

/// What became of all that was queued and made.
struct Counts {
    Kinds kinds;
    std::atomic<std::uint64_t> grabs{0};
    std::atomic<std::uint64_t> grabbed{0};
    std::atomic<std::uint64_t> failed{0};
    std::atomic<std::uint64_t> canceled{0};
    std::atomic<std::uint64_t> writes{0};
    std::atomic<std::uint64_t> refusals{0};  ///< accesses of a camera that is unplugged, and the like
    std::atomic<std::uint64_t> removals{0};
    std::atomic<std::uint64_t> enumerations{0};
};

/// One grab of frames that come when a buffer is queued for them: each of them arrives, in its order.
class Grab {
public:
    Grab(IStreamGrabber& grabber, Counts& counts, std::function<bool()> isDisturbed)
        : m_grabber(grabber), m_counts(counts), m_isDisturbed(std::move(isDisturbed)) {
        const GenApi::CIntegerPtr size = grabber.GetNodeMap()->GetNode("PayloadSize");
        for (std::size_t index = 0; index < kBuffers; ++index) {
            m_memory.emplace_back(static_cast<std::size_t>(size->GetValue()));
            m_handles.push_back(grabber.RegisterBuffer(m_memory.back().data(), m_memory.back().size()));
        }
    }

    void Run(const std::function<bool()>& goesOn) {
        Trigger(0);
        m_grabber.PrepareGrab();
        for (const StreamBufferHandle handle : m_handles)
            Queue(handle);
        while (m_results < kFrames && goesOn()) {
            const StreamBufferHandle handle = Take();
            if (handle == 0)
                return;
            Queue(handle);
        }
        Finish();
        while (m_results < m_queued && Take() != 0) {
        }
        EXPECT_EQ(m_results, m_queued);
        ++m_counts.grabs;
    }

private:
    // Without its camera a grab ends as well, but for the camera's part.
    void Finish() {
        try {
            m_grabber.FinishGrab();
        } catch (const GenericException& error) {
            m_counts.kinds.Note("grab: " + KindOf(error), m_isDisturbed());
            ++m_counts.refusals;
        }
    }
    void Trigger(std::uint64_t frames) {
        const GenApi::CIntegerPtr node = m_grabber.GetNodeMap()->GetNode("DebugData1");
        node->SetValue(static_cast<std::int64_t>(frames));
    }
    void Queue(StreamBufferHandle handle) {
        m_grabber.QueueBuffer(handle);
        Trigger(++m_queued);
    }
    StreamBufferHandle Take() {
        GrabResult result;
        while (!m_grabber.RetrieveResult(result)) {
            if (!m_grabber.GetWaitObject().Wait(kPatience)) {
                ADD_FAILURE() << "Result " << m_results << " of " << m_queued << " does not come";
                return 0;
            }
        }
        ++m_results;
        Check(result);
        return result.handle;
    }
    // Frames are numbered by the grabber: none is missing, none comes twice, cancelled buffers come behind all of them.
    void Check(const GrabResult& result) {
        if (result.status == Vanto::Canceled) {
            ++m_counts.canceled;
            return;
        }
        if (!result.Succeeded()) {
            m_counts.kinds.Note("frame: " + std::string(result.errorDescription.c_str()), m_isDisturbed());
            ++m_counts.failed;
            ++m_frames;
            return;
        }
        ++m_counts.grabbed;
        const auto number =
            grabber::ReadFrameMark({static_cast<const std::uint8_t*>(result.buffer), result.payloadSize});
        EXPECT_EQ(number.value_or(~std::uint64_t{0}), m_frames);
        EXPECT_EQ(result.frameTag, m_frames);
        ++m_frames;
    }

    IStreamGrabber& m_grabber;
    Counts& m_counts;
    const std::function<bool()> m_isDisturbed;
    std::vector<std::vector<std::uint8_t>> m_memory;
    std::vector<StreamBufferHandle> m_handles;
    std::uint64_t m_queued = 0;
    std::uint64_t m_results = 0;
    std::uint64_t m_frames = 0;
};

class Soak : public Machine {
protected:
    Soak() {
        for (int camera = 0; camera < kCameras; ++camera) {
            MarlowSim::CameraOptions options = Camera(std::to_string(21 + camera));
            options.paced = camera == 1;
            if (camera == kBadLine)
                options.faults.loss = options.faults.damage = 0.02;
            Add(NameOf(camera), options,
                "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=0;Trigger=On;"
                "</DeviceSpecificString>");
        }
    }

    static std::string NameOf(int camera) { return "cam" + std::to_string(camera); }
    bool GoesOn() const { return std::chrono::steady_clock::now() < m_end; }

    void UseCameras(std::chrono::seconds duration) {
        m_end = std::chrono::steady_clock::now() + duration;
        std::vector<std::jthread> threads;
        for (int camera = 0; camera < kCameras; ++camera)
            threads.emplace_back([this, camera] {
                while (GoesOn())
                    UseOnce(camera);
            });
        threads.emplace_back([this] { EnumerateAll(); });
        threads.emplace_back([this] { PullCables(); });
        threads.clear();
        for (int camera = 0; camera < kCameras; ++camera) {
            if (!simulator.IsPlugged(NameOf(camera)))
                simulator.Plug(NameOf(camera));
        }
        CTlFactory::GetInstance().ReleaseUnusedTls();
        m_log.Clear();
    }

private:
    struct Destroyer {
        void operator()(IVantoDevice* device) const { CTlFactory::GetInstance().DestroyDevice(device); }
    };

    // Whether the cable was pulled or plugged since, is out, or the line is bad anyway.
    bool IsDisturbed(int camera, int changesBefore) const {
        return camera == kBadLine || m_changes.at(static_cast<std::size_t>(camera)) != changesBefore ||
               !simulator.IsPlugged(NameOf(camera));
    }
    // A camera that is unplugged at any moment: what fails then throws, and the next turn begins anew.
    void UseOnce(int camera) {
        const int changes = m_changes.at(static_cast<std::size_t>(camera));
        const auto isDisturbed = [this, camera, changes] { return IsDisturbed(camera, changes); };
        try {
            const std::unique_ptr<IVantoDevice, Destroyer> device(
                CTlFactory::GetInstance().CreateDevice(Partial(std::to_string(21 + camera))));
            if (!device)
                return;
            device->Open();
            Vanto::RegisterRemovalCallback(*device, [this](IVantoDevice*) { ++m_counts.removals; });
            LeaveRoomForOffsets(*device);
            IStreamGrabber* const grabber = device->GetStreamGrabber(0);
            if (grabber == nullptr)
                throw RUNTIME_EXCEPTION("There is no stream grabber");
            std::jthread features([&](const std::stop_token& stop) { ChangeFeatures(*device, isDisturbed, stop); });
            grabber->Open();
            GrabOn(*grabber, isDisturbed);
        } catch (const GenericException& error) {
            m_counts.kinds.Note("turn: " + KindOf(error), IsDisturbed(camera, changes));
            ++m_counts.refusals;
        }
        m_log.Clear();
    }
    void GrabOn(IStreamGrabber& grabber, const std::function<bool()>& isDisturbed) {
        Grab grab(grabber, m_counts, isDisturbed);
        try {
            grab.Run([this] { return GoesOn(); });
        } catch (...) {
            grabber.Close();  // before the buffers' memory goes
            throw;
        }
        grabber.Close();
    }
    static void LeaveRoomForOffsets(IVantoDevice& device) {
        const GenApi::CIntegerPtr width = device.GetNodeMap()->GetNode("Width");
        const GenApi::CIntegerPtr offset = device.GetNodeMap()->GetNode("OffsetX");
        offset->SetValue(0);
        width->SetValue(width->GetMax() - offset->GetInc() * width->GetInc());
    }
    void ChangeFeatures(IVantoDevice& device, const std::function<bool()>& isDisturbed, const std::stop_token& stop) {
        for (std::int64_t turn = 0; !stop.stop_requested(); ++turn) {
            try {
                const GenApi::CIntegerPtr offset = device.GetNodeMap()->GetNode("OffsetX");
                offset->SetValue(offset->GetMin() + turn % 2 * offset->GetInc(), false);
                ++m_counts.writes;
            } catch (const GenericException& error) {
                m_counts.kinds.Note("feature: " + KindOf(error), isDisturbed());
                ++m_counts.refusals;
            }
        }
    }
    void EnumerateAll() {
        while (GoesOn()) {
            Enumerate();
            ++m_counts.enumerations;
        }
    }
    void PullCables() {
        std::mt19937 random(7);
        while (GoesOn()) {
            const std::size_t camera = random() % kCameras;
            const std::string name = NameOf(static_cast<int>(camera));
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 3000));
            ++m_changes.at(camera);
            simulator.Unplug(name);
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 500));
            simulator.Plug(name);
            ++m_changes.at(camera);  // a turn that began meanwhile is disturbed, too
        }
    }

    std::chrono::steady_clock::time_point m_end;
    std::array<std::atomic<int>, kCameras> m_changes{};

protected:
    Counts m_counts;
};

// The first quarter lets everything be loaded and the heap find its size.
TEST_F(Soak, LosesNoFrameAndNothingElse) {
    const std::chrono::seconds duration = Duration();
    UseCameras(duration / 4);
    const std::size_t resources = Resources();
    const std::size_t memory = ResidentBytes();
    UseCameras(duration - duration / 4);
    EXPECT_LE(Resources(), resources);
    EXPECT_LE(ResidentBytes(), memory + MostGrowth());
    EXPECT_GT(m_counts.grabbed, 0U);
    std::cout << "grabs " << m_counts.grabs << ", grabbed " << m_counts.grabbed << ", failed " << m_counts.failed
              << ", canceled " << m_counts.canceled << ", writes " << m_counts.writes << ", refusals "
              << m_counts.refusals << ", removals " << m_counts.removals << ", enumerations " << m_counts.enumerations
              << ", bytes more " << (ResidentBytes() > memory ? ResidentBytes() - memory : 0) << "\n";
    std::uint64_t undisturbed = 0;
    for (const auto& [noted, count] : m_counts.kinds.Get()) {
        std::cout << count << " times " << noted << "\n";
        const bool isUndisturbed = noted.starts_with(kUndisturbed);
        const std::string kind = isUndisturbed ? noted.substr(sizeof kUndisturbed - 1) : noted;
        EXPECT_TRUE(IsAmong(kExpected, kind)) << count << " times " << noted;
        undisturbed += isUndisturbed && !IsAmong(kLastsLonger, kind) ? count : 0;
    }
    const auto minutes = static_cast<std::uint64_t>(std::chrono::ceil<std::chrono::minutes>(duration).count());
    EXPECT_LE(undisturbed, kMostUndisturbedPerMinute * minutes);
}

}  // namespace
}  // namespace integration
