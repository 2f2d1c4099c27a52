/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A device with a camera description on a scripted port, and the stream grabber on it
 */
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CameraXml.h"
#include "PluginScript.h"
#include "VantoCLSer/VantoCLSerDevice.h"
#include "VantoCLSer/VantoCLSerPort.h"
#include "VantoCLSer/stream/VantoCLSerStreamGrabber.h"
#include "os/Library.h"
#include "scripted/Scripted.h"
#include "vanto/LogListener.h"

namespace stream_test {

/// Where plug-ins lie: a tree of the tests' own, or the built tree with the simulated grabber.
std::string TreeOf(const std::string& name);
/// Where the plug-in of such a tree lies.
std::string PluginFolderOf(const std::string& name);
inline constexpr char kSimulated[] = "simulated";

/// The memory of a camera, of 4-byte registers.
class MemoryPort final : public GenApi::IPort {
public:
    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

    std::map<std::int64_t, std::vector<std::uint8_t>> memory;
    std::atomic<bool> isGone{false};  ///< accesses fail
    std::function<void()> onRead;     ///< called by each read
};

/// A device that is open, with a camera of the given description behind the scripted serial line.
class OpenDevice {
public:
    explicit OpenDevice(const CameraXml& camera = CameraXml(), const std::string& deviceSpecific = "Sapera");
    ~OpenDevice();
    OpenDevice(const OpenDevice&) = delete;
    OpenDevice& operator=(const OpenDevice&) = delete;

    Vanto::CVantoCLSerDevice* operator->() const { return m_device; }
    Vanto::CVantoCLSerDevice* Get() const { return m_device; }
    void Close() { m_device->Close(); }
    void Destroy();
    MemoryPort& Memory() { return m_memory; }
    std::int64_t Value(const char* node) const;
    void Set(const char* node, std::int64_t value);
    GenApi::EAccessMode AccessModeOf(const char* node) const;

private:
    scripted::Environment m_environment;
    Vanto::CVantoCLSerPort m_port;
    MemoryPort m_memory;
    Vanto::CVantoCLSerDevice* m_device = nullptr;
};

/// The script of the plain plug-in, as it is when it has just been loaded; keeps it loaded.
class PlainPlugin {
public:
    explicit PlainPlugin(const std::string& tree = "plain");
    PluginScript* operator->() { return m_script; }
    PluginScript& Script() { return *m_script; }
    bool Deliver(const PlainFrame& frame) { return m_script->callee->table->frameDelivered(m_script->callee, &frame); }

private:
    os::Library m_library;
    PluginScript* m_script;
};

/// A stream grabber over the plain plug-in, initialised and open.
class StreamTest : public testing::Test {
public:  // hooks of the plug-in, which are functions of their own, use all of it
    explicit StreamTest(const CameraXml& camera = CameraXml());
    ~StreamTest() override;

    /// Registers a buffer of this many bytes, filled with 0xEE.
    Vanto::StreamBufferHandle AddBuffer(std::size_t size = 32);
    std::vector<std::uint8_t>& BufferOf(Vanto::StreamBufferHandle handle) { return *m_buffers.at(handle); }
    /// A contiguous frame of 8 x 4 pixels of one byte; its data are 0, 1, 2, ...
    PlainFrame Frame(std::uint32_t tag = 0);
    Vanto::GrabResult Retrieve();
    bool IsSignalled() { return m_grabber->GetWaitObject().Wait(0); }

    scripted::ScopedVariable m_root;
    PlainPlugin m_plugin;
    OpenDevice m_device;
    std::map<Vanto::StreamBufferHandle, std::unique_ptr<std::vector<std::uint8_t>>> m_buffers;
    std::vector<std::uint8_t> m_frameData;
    std::unique_ptr<Vanto::CVantoCLSerStreamGrabber> m_grabber;
    std::optional<Vanto::tracelog::LogRecorder> m_log;
};

/// How many messages of a level were logged, whatever they say.
std::size_t CountLevel(const Vanto::tracelog::LogRecorder& log, std::uint32_t level);

/// The description of the GenICam exception of a type that an action of a stream grabber throws; fails the test when it
/// throws none, or one that comes from somewhere else.
template <class Exception, class Action>
std::string MessageOf(const Action& action) {
    try {
        action();
    } catch (const Exception& error) {
        EXPECT_STREQ(error.GetSourceFileName(), "VantoCLSer/VantoCLSerStreamGrabber");
        return error.GetDescription();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "Another exception: " << error.what();
        return "";
    }
    ADD_FAILURE() << "No exception";
    return "";
}

}  // namespace stream_test
