/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A device with a camera description on a scripted port, and the stream grabber on it
 */

#include "StreamTest.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "os/Path.h"

namespace stream_test {

using namespace Vanto;

namespace {

constexpr char kCamera[] = "Marlow#Heron#H2048#1";
constexpr char kPort[] = "Scripted#Port0";

CDeviceInfo InfoOf(const std::string& deviceSpecific) {
    CVantoCLSerDeviceInfo info;
    info.SetPropertyValue("PortID", kPort);
    info.SetPropertyValue("DeviceID", scripted::FullDeviceId(kCamera).c_str());
    info.SetPropertyValue("DeviceSpecificString", deviceSpecific.c_str());
    return info;
}

}  // namespace

std::string TreeOf(const std::string& name) {
    return name == kSimulated ? std::string(STREAM_BUILD_ROOT) : STREAM_ROOTS "/" + name;
}

std::string PluginFolderOf(const std::string& name) {
    return TreeOf(name) + os::ToSystemSeparators("/" VANTO_DIR_PLUGINS);
}

void MemoryPort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    if (const std::function<void()> hook = onRead)
        hook();
    if (isGone)
        throw RUNTIME_EXCEPTION("The camera does not answer");
    std::vector<std::uint8_t>& bytes = memory[address];
    bytes.resize(static_cast<std::size_t>(length));
    std::memcpy(buffer, bytes.data(), bytes.size());
}

void MemoryPort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    if (isGone)
        throw RUNTIME_EXCEPTION("The camera does not answer");
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    memory[address].assign(bytes, bytes + length);
}

OpenDevice::OpenDevice(const CameraXml& camera, const std::string& deviceSpecific) : m_port(kPort) {
    scripted::Serial().SetPorts(1, {kCamera});
    m_device = CVantoCLSerDevice::Create(InfoOf(deviceSpecific), m_port);
    m_device->CreateNodeMapFromString(camera.Text().c_str(), {});
    m_device->_Connect(&m_memory);
    m_device->Open(AccessModeSet());
}

OpenDevice::~OpenDevice() {
    Destroy();
}

void OpenDevice::Destroy() {
    if (m_device != nullptr)
        m_device->DestroySelf();
    m_device = nullptr;
}

std::int64_t OpenDevice::Value(const char* node) const {
    return GenApi::CIntegerPtr(m_device->_GetNode(node))->GetValue();
}

void OpenDevice::Set(const char* node, std::int64_t value) {
    GenApi::INode* const target = m_device->_GetNode(node);
    if (const GenApi::CEnumerationPtr enumeration = target; enumeration.IsValid())
        enumeration->SetIntValue(value);
    else
        GenApi::CIntegerPtr(target)->SetValue(value);
}

GenApi::EAccessMode OpenDevice::AccessModeOf(const char* node) const {
    return m_device->_GetNode(node)->GetAccessMode();
}

PlainPlugin::PlainPlugin(const std::string& tree)
    : m_library(TreeOf(tree) + "/" VANTO_DIR_PLUGINS "/SaperaFgPlugin_MD_VC100.dll"),
      m_script(m_library.Get<GetPluginScriptFunction>("GetPluginScript")()) {
    *m_script = PluginScript();
    m_script->makesObject = m_script->initResult = m_script->startResult = m_script->stopResult = true;
}

std::size_t CountLevel(const tracelog::LogRecorder& log, std::uint32_t level) {
    const std::vector<tracelog::LogMessage> messages = log.GetMessages();
    return static_cast<std::size_t>(
        std::count_if(messages.begin(), messages.end(),
                      [level](const tracelog::LogMessage& message) { return message.level == level; }));
}

StreamTest::StreamTest(const CameraXml& camera) : m_root("VANTO_ROOT", TreeOf("plain")), m_device(camera) {
    m_grabber = std::make_unique<CVantoCLSerStreamGrabber>("Sapera", m_device.Get());
    m_grabber->Initialize();
    m_grabber->Open();
    m_log.emplace("Vanto.CLSer.Stream:trace");
}

StreamTest::~StreamTest() {
    m_grabber.reset();
}

StreamBufferHandle StreamTest::AddBuffer(std::size_t size) {
    auto buffer = std::make_unique<std::vector<std::uint8_t>>(size, std::uint8_t{0xEE});
    const StreamBufferHandle handle = m_grabber->RegisterBuffer(buffer->data(), size);
    m_buffers[handle] = std::move(buffer);
    return handle;
}

PlainFrame StreamTest::Frame(std::uint32_t tag) {
    m_frameData.resize(32);
    std::iota(m_frameData.begin(), m_frameData.end(), std::uint8_t{0});
    PlainFrame frame{};
    frame.width = 8;
    frame.lineCount = 4;
    frame.lineLength = frame.linePitch = 8;
    frame.dataSize = m_frameData.size();
    frame.data = m_frameData.data();
    frame.frameTag = tag;
    return frame;
}

GrabResult StreamTest::Retrieve() {
    GrabResult result;
    EXPECT_TRUE(m_grabber->RetrieveResult(result));
    return result;
}

}  // namespace stream_test
