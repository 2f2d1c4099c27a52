/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Each call of the system fails in turn, in each operation of a device: the error says what, nothing is left behind,
 * and the next attempt works
 */

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "CameraProcess.h"
#include "GenApi/GenApi.h"
#include "failing/FailingCall.h"
#include "scripted/Scripted.h"
#include "tests/integration/SmallDescription.h"
#include "tests/integration/posix/ThreadSwitches.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/posix/AddressLimit.h"
#include "vanto/LogListener.h"
#include "vanto/StreamGrabber.h"
#include "vanto/TlFactory.h"

namespace integration {
namespace {

using failing::Call;
using failing::FailingCall;
using Vanto::CDeviceInfo;
using Vanto::CTlFactory;
using Vanto::IVantoDevice;

constexpr char kCamera[] = "cam0";
constexpr std::size_t kFirstCalls = 3;  // of each place, beside the last

std::size_t OpenFiles() {
    using std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(directory_iterator("/proc/self/fd"), directory_iterator()));
}

class FailingCalls : public testing::Test {
protected:
    static MarlowSim::CameraOptions SmallCamera() {
        MarlowSim::CameraOptions options;
        options.serial = "21";
        return options;
    }
    explicit FailingCalls(MarlowSim::CameraOptions options = SmallCamera(), const std::string& nodes = {},
                          const std::string& settings = {}) {
        m_surroundings.configuration.Write("camera.xml", SmallDescription(nodes));
        if (options.descriptionSize == 0)
            options.descriptionFile = m_surroundings.configuration / "camera.xml";
        m_camera = std::make_unique<CameraProcess>(m_surroundings.links.Path(), kCamera, options);
        m_surroundings.WritePorts("<Port><ID>COM_Port#cam0</ID><Enabled>yes</Enabled>" + settings + "</Port>");
    }
    ~FailingCalls() override { CTlFactory::GetInstance().ReleaseUnusedTls(); }

    // Throws where not everything is as it should be.
    void Enumerate() {
        Vanto::DeviceInfoList list;
        CTlFactory::GetInstance().EnumerateDevices(list);
        if (list.size() != 1 || list[0].GetSerialNumber() != "21")
            throw std::runtime_error("no camera");
        m_info = list[0];
    }
    void Create() { m_device = CTlFactory::GetInstance().CreateDevice(m_info); }
    void Open() { m_device->Open(); }
    void CreateAndOpen() {
        Create();
        Open();
    }
    GenApi::CIntegerPtr Width() const { return m_device->GetNodeMap()->GetNode("Width"); }
    void Read() const {
        if (Width()->GetValue(false, true) != 2048)
            throw std::runtime_error("another width");
    }
    void Write() const { Width()->SetValue(2048); }
    void Destroy() {
        if (m_device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(std::exchange(m_device, nullptr));
    }

    void GoTheWholeWay() {
        Enumerate();
        CreateAndOpen();
        Read();
        Write();
        m_device->Close();
        Destroy();
    }

    using Step = std::function<void()>;

    void FailEach(const Step& prepare, const Step& operation) {
        GoTheWholeWay();
        const std::vector<Call> calls = Record(prepare, operation);
        const std::size_t files = OpenFiles();
        std::size_t failures = 0;
        for (const Call& call : calls) {
            SCOPED_TRACE("call " + std::to_string(call.index) + " of " + call.place.ToText());
            failures += FailOne(call, prepare, operation) ? 1 : 0;
            EXPECT_NO_THROW(GoTheWholeWay()) << "afterwards";
            EXPECT_TRUE(AreFilesOpen(files)) << OpenFiles() << " instead of " << files;
            if (HasFailure())
                break;
        }
        EXPECT_GT(failures, 0U);
        CTlFactory::GetInstance().ReleaseUnusedTls();
        EXPECT_TRUE(WaitForOtherThreads(m_threads)) << ThreadSwitches().size() << " instead of " << m_threads;
        RecordProperty("calls", static_cast<int>(calls.size()));
    }

    std::vector<Call> Record(const Step& prepare, const Step& operation) {
        prepare();
        const failing::CallRecorder recorder;
        operation();
        const std::vector<Call> calls = recorder.Samples(kFirstCalls);
        Destroy();
        return calls;
    }

    // What goes wrong is said with the system's reason, in the error or in the log.
    bool FailOne(const Call& call, const Step& prepare, const Step& operation) {
        prepare();
        m_log.Clear();
        std::string error;
        bool hasFailed = false;
        std::string reason;
        {
            const FailingCall failing(call);
            error = Try(operation);
            hasFailed = failing.HasFailed();
            reason = failing.Reason();
        }
        if (hasFailed && !error.empty() && !IsLookedAtAgain(call)) {
            EXPECT_THAT(error + "\n" + Warnings(), testing::HasSubstr(reason));
        }
        Destroy();
        return hasFailed;
    }
    // What can't be looked at is opened all the same: the error is that of opening, here that there is no such file.
    static bool IsLookedAtAgain(const Call& call) {
        return call.place.function == "stat" && call.place.file.starts_with("libVantoBase");
    }
    std::string Warnings() const { return Messages(Vanto::tracelog::kWarning); }
    std::string Messages(std::uint32_t level) const {
        std::string text;
        for (const auto& message : m_log.GetMessages()) {
            if (message.level >= level)
                text += message.text + "\n";
        }
        return text;
    }

    static std::string Try(const Step& operation) {
        try {
            operation();
            return {};
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    // Threads that have ended give their last files back in their own time.
    static bool AreFilesOpen(std::size_t expected) {
        return test_support::WaitUntil([expected] { return OpenFiles() == expected; }, std::chrono::seconds(10));
    }

    scripted::Surroundings m_surroundings;
    const std::size_t m_threads = ThreadSwitches().size();
    std::unique_ptr<CameraProcess> m_camera;
    Vanto::tracelog::LogRecorder m_log{"*:trace"};
    CDeviceInfo m_info;
    IVantoDevice* m_device = nullptr;
};

// The stream grabber of a camera, as it is made and used.
class FailingGrabs : public FailingCalls {
protected:
    FailingGrabs()
        : FailingCalls(SmallCamera(), GrabbingNodes(),
                       "<Manufacturer>Marlow</Manufacturer>"
                       "<DeviceSpecificString>SaperaSimulated;FrameRate=1000</DeviceSpecificString>") {}

    Vanto::IStreamGrabber& Make() {
        Vanto::IStreamGrabber* const grabber = m_device->GetStreamGrabber(0);
        if (grabber == nullptr)
            throw std::runtime_error("no stream grabber: " + Messages(Vanto::tracelog::kDebug));
        return *grabber;
    }
    void GrabOne() {
        Vanto::IStreamGrabber& grabber = Make();
        grabber.Open();
        const Vanto::StreamBufferHandle handle = grabber.RegisterBuffer(m_memory.data(), m_memory.size());
        grabber.PrepareGrab();
        grabber.QueueBuffer(handle);
        if (!grabber.GetWaitObject().Wait(60000))
            throw std::runtime_error("no frame");
        grabber.FinishGrab();
        Vanto::GrabResult result;
        if (!grabber.RetrieveResult(result) || result.status != Vanto::Grabbed)
            throw std::runtime_error("no picture");
        grabber.DeregisterBuffer(handle);
        grabber.Close();
    }

    std::vector<std::uint8_t> m_memory = std::vector<std::uint8_t>(64 * 32);
};

// The sanitizers need address space of their own, and end the process where there is none.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

using test_support::AddressLimit;

class AddressSpace : public FailingCalls {
protected:
    // Loading this takes more than the heap has left. The first suite of the program: libraries are loaded in it.
    static MarlowSim::CameraOptions LargeCamera() {
        MarlowSim::CameraOptions options = SmallCamera();
        options.descriptionSize = 1'000'000;
        return options;
    }
    // So that what is freed goes back to the system, and is missing the next time.
    AddressSpace() : FailingCalls(LargeCamera()) {
        ::mallopt(M_MMAP_THRESHOLD, 64 << 10);
        Vanto::TlInfoList list;
        CTlFactory::GetInstance().EnumerateTls(list);  // looks for transport layers once
    }
};

TEST_F(AddressSpace, ThatIsExhaustedIsAnError) {
    int failures = 0;
    for (std::uint64_t more = 0; more <= std::uint64_t{16} << 20; more += std::uint64_t{1} << 20) {
        SCOPED_TRACE(more);
        ::malloc_trim(0);
        {
            const AddressLimit limit(more);
            for (const Step& step : {Step([&] { Enumerate(); }), Step([&] { Create(); }), Step([&] { Open(); }),
                                     Step([&] { Read(); }), Step([&] { Write(); }), Step([&] { m_device->Close(); })}) {
                if (!Try(step).empty() && ++failures > 0)
                    break;
            }
        }
        Destroy();
        EXPECT_NO_THROW(GoTheWholeWay()) << Warnings();
        m_log.Clear();
    }
    EXPECT_GT(failures, 0);
}

#endif

TEST_F(FailingCalls, OfEnumerating) {
    FailEach([] {}, [&] { Enumerate(); });
}

TEST_F(FailingCalls, OfCreating) {
    FailEach([] {}, [&] { Create(); });
}

TEST_F(FailingCalls, OfOpening) {
    FailEach([&] { Create(); }, [&] { Open(); });
}

TEST_F(FailingCalls, OfReading) {
    FailEach([&] { CreateAndOpen(); }, [&] { Read(); });
}

TEST_F(FailingCalls, OfWriting) {
    FailEach([&] { CreateAndOpen(); }, [&] { Write(); });
}

TEST_F(FailingCalls, OfClosing) {
    FailEach([&] { CreateAndOpen(); }, [&] { m_device->Close(); });
}

TEST_F(FailingCalls, OfClosingForInactivity) {
    FailEach(
        [&] {
            CTlFactory::GetInstance().ReleaseUnusedTls();  // with the timer of the port
            CreateAndOpen();
        },
        [&] {
            const GenApi::CIntegerPtr timeout = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
            timeout->SetValue(86400);
        });
}

TEST_F(FailingGrabs, OfMakingTheStreamGrabber) {
    FailEach([&] { CreateAndOpen(); }, [&] { Make(); });
}

TEST_F(FailingGrabs, OfGrabbing) {
    FailEach(
        [&] {
            CreateAndOpen();
            Make();
        },
        [&] { GrabOne(); });
}

Call LastOf(const std::string& function, const std::vector<Call>& calls) {
    Call last;
    for (const Call& call : calls) {
        if (call.place.function == function && call.index >= last.index)
            last = call;
    }
    return last;
}

// The highest rate is the last one that is set while a device is opened.
TEST_F(FailingCalls, OfARateThatTheLineClaimsAndRefusesLeaveItOut) {
    GoTheWholeWay();
    const Call last = LastOf("tcsetattr", Record([&] { Create(); }, [&] { Open(); }));
    Create();
    m_log.Clear();
    {
        const FailingCall refusal(last, EINVAL);
        EXPECT_NO_THROW(Open());
        EXPECT_TRUE(refusal.HasFailed());
    }
    EXPECT_NO_THROW(Read());
    EXPECT_THAT(Warnings(),
                testing::HasSubstr("claims a baud rate and refuses it (flag 0x80): it is left out from now on"));
    m_device->Close();
    m_log.Clear();
    EXPECT_NO_THROW(Open());
    EXPECT_NO_THROW(Read());
    EXPECT_THAT(Warnings(), testing::Not(testing::HasSubstr("refuses")));
    Destroy();
}

}  // namespace
}  // namespace integration
