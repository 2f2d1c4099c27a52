/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What delivering a frame costs, over bare copies, locks and wake-ups measured in turns with it
 *
 * The counter "ratio" is what was measured, "limit" what it may be: at least, where the name begins with Bandwidth, at
 * most elsewhere. Medians of all rounds.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using Clock = std::chrono::steady_clock;

constexpr double kLeastBandwidth = 0.95;
constexpr double kLeastTogether = 0.9;
constexpr double kMostLockPairs = 60;
constexpr double kMostLatency = 2;

using Memory = std::vector<std::uint8_t>;

/// A prepared stream grabber with some buffers.
class Stream {
public:
    explicit Stream(std::size_t bufferSize, std::size_t buffers = 1) : memories(buffers, Memory(bufferSize)) {
        m_grabber.Initialize();
        m_grabber.Open();
        m_grabber.PrepareGrab();
        for (Memory& memory : memories)
            m_handles.push_back(m_grabber.RegisterBuffer(memory.data(), memory.size()));
    }
    ~Stream() {
        m_grabber.FinishGrab();
        for (GrabResult left; m_grabber.RetrieveResult(left);) {
        }
        for (const StreamBufferHandle handle : m_handles)
            m_grabber.DeregisterBuffer(handle);
        m_grabber.Close();
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    WaitObject& GetWaitObject() { return m_grabber.GetWaitObject(); }
    void Queue(std::size_t buffer = 0) { m_grabber.QueueBuffer(m_handles[buffer], nullptr); }
    void Deliver(const PlainFrame& frame) { m_plugin.Deliver(frame); }
    bool Retrieve() {
        GrabResult result;
        return m_grabber.RetrieveResult(result) && result.Succeeded();
    }

    std::vector<Memory> memories;

private:
    std::vector<StreamBufferHandle> m_handles;
    scripted::ScopedVariable m_root{"VANTO_ROOT", TreeOf("plain")};
    PlainPlugin m_plugin;
    OpenDevice m_device;
    CVantoCLSerStreamGrabber m_grabber{"Sapera", m_device.Get()};
};

template <class Action>
double SecondsOf(const Action& action) {
    const auto begin = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double MedianOf(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

PlainFrame FrameOf(const Memory& data, std::uint32_t width, std::uint32_t lines, std::uint64_t pitch) {
    PlainFrame frame{};
    frame.width = width;
    frame.lineCount = static_cast<std::int32_t>(lines);
    frame.lineLength = width;
    frame.linePitch = pitch;
    frame.dataSize = std::uint64_t{width} * lines;
    frame.data = data.data();
    return frame;
}

void CopyLines(std::uint8_t* to, const PlainFrame& frame) {
    const auto* from = static_cast<const std::uint8_t*>(frame.data);
    for (std::int32_t line = 0; line < frame.lineCount; ++line, to += frame.lineLength, from += frame.linePitch)
        std::memcpy(to, from, frame.lineLength);
    benchmark::ClobberMemory();
}

void CopyWhole(std::uint8_t* to, const PlainFrame& frame) {
    std::memcpy(to, frame.data, frame.dataSize);
    benchmark::ClobberMemory();
}

/// Measures a bare copy and the delivery of a frame in turns, each between another pair of a ring of frames and
/// buffers.
template <class BareCopy>
void CompareBandwidths(benchmark::State& state, std::uint32_t width, std::uint32_t lines, std::uint64_t pitch,
                       std::size_t pairs, const BareCopy& copy) {
    constexpr std::size_t kBytesOfAll = std::size_t{1} << 31;
    const std::size_t size = std::size_t{width} * lines;
    const std::vector<Memory> data(pairs, Memory(pitch * lines, std::uint8_t{1}));
    Stream stream(size, pairs);
    std::vector<double> bare;
    std::vector<double> delivered;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (std::size_t round = 0; round < std::max<std::size_t>(kBytesOfAll / size, 101); ++round) {
            const std::size_t copied = round % pairs;
            const std::size_t queued = (round + pairs / 2) % pairs;
            stream.Queue(queued);
            const PlainFrame frame = FrameOf(data[queued], width, lines, pitch);
            bare.push_back(
                SecondsOf([&] { copy(stream.memories[copied].data(), FrameOf(data[copied], width, lines, pitch)); }));
            delivered.push_back(SecondsOf([&] { stream.Deliver(frame); }));
            if (!stream.Retrieve())
                return state.SkipWithError("no frame came");
        }
    }
    const double bareMedian = MedianOf(bare);
    const double deliveredMedian = MedianOf(delivered);
    state.counters["bare_us"] = bareMedian * 1e6;
    state.counters["delivered_us"] = deliveredMedian * 1e6;
    state.counters["ratio"] = bareMedian / deliveredMedian;
    state.counters["limit"] = kLeastBandwidth;
}

// Frames that a board has written are not in the processor's caches, and buffers that an application has worked off are
// not either: so the ring is larger than they are.
std::size_t PairsBeyondCaches(std::size_t size) {
    constexpr std::size_t kBytesOfRing = std::size_t{128} << 20;
    return std::max<std::size_t>(kBytesOfRing / size / 2, 2);
}

void BandwidthOfContiguousFrames(benchmark::State& state) {
    constexpr std::uint32_t kWidth = 1024;
    const auto lines = static_cast<std::uint32_t>(state.range(0));  // of a KB each
    CompareBandwidths(state, kWidth, lines, kWidth, PairsBeyondCaches(std::size_t{kWidth} * lines), &CopyWhole);
}
BENCHMARK(BandwidthOfContiguousFrames)
    ->ArgName("KB")
    ->Arg(64)
    ->Arg(1 << 10)
    ->Arg(8 << 10)
    ->Arg(64 << 10)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// The same frame into the same buffer again and again: the copy is as fast as the second-level cache.
void BandwidthWithinTheCache(benchmark::State& state) {
    constexpr std::uint32_t kWidth = 1024;
    CompareBandwidths(state, kWidth, static_cast<std::uint32_t>(state.range(0)), kWidth, 1, &CopyWhole);
}
BENCHMARK(BandwidthWithinTheCache)->ArgName("KB")->Arg(64)->Iterations(1)->Unit(benchmark::kMillisecond);

void BandwidthOfPitchedFrames(benchmark::State& state) {
    constexpr std::uint64_t kGap = 64;
    const auto width = static_cast<std::uint32_t>(state.range(0));
    const auto lines = static_cast<std::uint32_t>(state.range(1));
    CompareBandwidths(state, width, lines, width + kGap, PairsBeyondCaches(std::size_t{width} * lines), &CopyLines);
}
BENCHMARK(BandwidthOfPitchedFrames)
    ->ArgNames({"width", "lines"})
    ->Args({640, 480})
    ->Args({1024, 1024})
    ->Args({4096, 2048})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// One of several stream grabbers of a camera, whose thread copies a frame and delivers one in turns.
class Neighbour {
public:
    Neighbour(CVantoCLSerDevice* device, PlainPlugin& plugin, std::size_t size)
        : m_grabber("Sapera", device), m_data(kPairs, Memory(size, std::uint8_t{1})), m_memories(kPairs, Memory(size)) {
        m_grabber.Initialize();
        m_callee = plugin->callee;
        m_grabber.Open();
        // The camera is locked by the first of them already.
        m_grabber.PrepareGrab();
        for (Memory& memory : m_memories)
            m_handles.push_back(m_grabber.RegisterBuffer(memory.data(), memory.size()));
    }

    void Run(std::size_t rounds) {
        const std::size_t size = m_data.front().size();
        for (std::size_t round = 0; round < rounds; ++round) {
            const std::size_t copied = round % kPairs;
            const std::size_t queued = (round + kPairs / 2) % kPairs;
            m_grabber.QueueBuffer(m_handles[queued], nullptr);
            const PlainFrame frame = FrameOf(m_data[queued], static_cast<std::uint32_t>(size), 1, size);
            bare.push_back(SecondsOf([&] {
                CopyWhole(m_memories[copied].data(),
                          FrameOf(m_data[copied], static_cast<std::uint32_t>(size), 1, size));
            }));
            delivered.push_back(SecondsOf([&] { m_callee->table->frameDelivered(m_callee, &frame); }));
            GrabResult result;
            allCame = m_grabber.RetrieveResult(result) && result.Succeeded() && allCame;
        }
    }

    std::vector<double> bare;
    std::vector<double> delivered;
    bool allCame = true;

private:
    static constexpr std::size_t kPairs = 6;

    CVantoCLSerStreamGrabber m_grabber;
    PlainCallee* m_callee = nullptr;
    std::vector<Memory> m_data;
    std::vector<Memory> m_memories;
    std::vector<StreamBufferHandle> m_handles;
};

// What four stream grabbers deliver together, over as many copies on as many threads.
void BandwidthOfFourAtOnce(benchmark::State& state) {
    constexpr std::size_t kGrabbers = 4;
    constexpr std::size_t kSize = std::size_t{4} << 20;
    constexpr std::size_t kRounds = 200;
    const scripted::ScopedVariable root("VANTO_ROOT", TreeOf("plain"));
    PlainPlugin plugin;
    OpenDevice device;
    std::vector<std::unique_ptr<Neighbour>> neighbours;
    for (std::size_t index = 0; index < kGrabbers; ++index)
        neighbours.push_back(std::make_unique<Neighbour>(device.Get(), plugin, kSize));
    for (auto iteration : state) {
        static_cast<void>(iteration);
        std::vector<std::jthread> threads;
        for (const auto& neighbour : neighbours)
            threads.emplace_back([&neighbour] { neighbour->Run(kRounds); });
    }
    double bare = 0;
    double delivered = 0;
    for (const auto& neighbour : neighbours) {
        if (!neighbour->allCame)
            state.SkipWithError("no frame came");
        bare += kSize / MedianOf(neighbour->bare);
        delivered += kSize / MedianOf(neighbour->delivered);
    }
    state.counters["bare_MBs"] = bare / 1e6;
    state.counters["delivered_MBs"] = delivered / 1e6;
    state.counters["ratio"] = delivered / bare;
    state.counters["limit"] = kLeastTogether;
}
BENCHMARK(BandwidthOfFourAtOnce)->Iterations(1)->Unit(benchmark::kMillisecond);

void FixedCost(benchmark::State& state) {
    constexpr int kRounds = 201;
    constexpr int kTurns = 500;
    const Memory data(8);
    Stream stream(data.size());
    const PlainFrame frame = FrameOf(data, 8, 1, 8);
    boost::recursive_mutex mutex;
    std::vector<double> pairs;
    std::vector<double> deliveries;
    bool allCame = true;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < kRounds; ++round) {
            pairs.push_back(SecondsOf([&] {
                for (int turn = 0; turn < kTurns; ++turn) {
                    const boost::lock_guard<boost::recursive_mutex> lock(mutex);
                    benchmark::ClobberMemory();
                }
            }));
            deliveries.push_back(SecondsOf([&] {
                for (int turn = 0; turn < kTurns; ++turn) {
                    stream.Queue();
                    stream.Deliver(frame);
                    allCame = stream.Retrieve() && allCame;
                }
            }));
        }
    }
    if (!allCame)
        state.SkipWithError("no frame came");
    state.counters["pair_ns"] = MedianOf(pairs) / kTurns * 1e9;
    state.counters["delivery_ns"] = MedianOf(deliveries) / kTurns * 1e9;
    state.counters["ratio"] = MedianOf(deliveries) / MedianOf(pairs);
    state.counters["limit"] = kMostLockPairs;
}
BENCHMARK(FixedCost)->Iterations(1)->Unit(benchmark::kMillisecond);

/// A thread that is woken, and when it was.
template <class Wait, class Reset>
class Sleeper {
public:
    Sleeper(Wait wait, Reset reset) : m_wait(std::move(wait)), m_reset(std::move(reset)) {}

    /// Seconds from just before the action that wakes the thread to its first step.
    template <class Wake>
    double Measure(const Wake& wake) {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_isWaiting; });
            m_isWaiting = false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));  // until it really sleeps
        const auto begin = Clock::now();
        wake();
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_woken != Clock::time_point(); });
        return std::chrono::duration<double>(std::exchange(m_woken, Clock::time_point()) - begin).count();
    }
    /// The thread ends when it is woken once more.
    void RequestEnd() { m_thread.request_stop(); }

private:
    void Run(const std::stop_token& end) {
        while (!end.stop_requested()) {
            Set([this] { m_isWaiting = true; });
            m_wait();
            const auto now = Clock::now();
            m_reset();
            Set([this, now] { m_woken = now; });
        }
    }
    template <class Change>
    void Set(const Change& change) {
        const std::lock_guard lock(m_mutex);
        change();
        m_changed.notify_all();
    }

    Wait m_wait;
    Reset m_reset;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isWaiting = false;
    Clock::time_point m_woken;
    std::jthread m_thread{[this](const std::stop_token& end) { Run(end); }};
};

class BareEvent {
public:
    void Signal() {
        const std::lock_guard lock(m_mutex);
        m_signalled = true;
        m_changed.notify_one();
    }
    void Wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_signalled; });
        m_signalled = false;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_signalled = false;
};

void Latency(benchmark::State& state) {
    constexpr int kRounds = 2001;
    constexpr std::uint32_t kLong = 60000;
    const Memory data(64);
    Stream stream(data.size());
    const PlainFrame frame = FrameOf(data, 8, 8, 8);
    BareEvent event;
    std::vector<double> bare;
    std::vector<double> delivered;
    {
        Sleeper waitsForEvent([&] { event.Wait(); }, [] {});
        Sleeper waitsForFrame([&] { stream.GetWaitObject().Wait(kLong); }, [&] { stream.Retrieve(); });
        for (auto iteration : state) {
            static_cast<void>(iteration);
            for (int round = 0; round < kRounds; ++round) {
                bare.push_back(waitsForEvent.Measure([&] { event.Signal(); }));
                stream.Queue();
                delivered.push_back(waitsForFrame.Measure([&] { stream.Deliver(frame); }));
            }
        }
        waitsForEvent.RequestEnd();
        waitsForFrame.RequestEnd();
        event.Signal();
        stream.Queue();
        stream.Deliver(frame);
    }
    state.counters["bare_us"] = MedianOf(bare) * 1e6;
    state.counters["delivered_us"] = MedianOf(delivered) * 1e6;
    state.counters["ratio"] = MedianOf(delivered) / MedianOf(bare);
    state.counters["limit"] = kMostLatency;
}
BENCHMARK(Latency)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
