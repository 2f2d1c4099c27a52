/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A simulated camera whose images come from the simulated frame grabber
 */
#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "FrameMark.h"
#include "tests/integration/Machine.h"
#include "tests/integration/Removals.h"
#include "vanto/StreamGrabber.h"

namespace integration {

using Vanto::GrabResult;
using Vanto::StreamBufferHandle;

inline constexpr std::size_t kBuffers = 8;
inline constexpr std::uint32_t kPatience = 60000;  // milliseconds

/// A camera and its stream grabber, both open; frames come when they are asked for.
class GrabsImages : public Machine {
protected:
    ~GrabsImages() override {
        if (m_device == nullptr)
            return;
        if (m_grabber != nullptr && m_grabber->IsOpen())
            m_grabber->Close();
        Destroy();
    }

    void Open(const std::string& parameters, const char* model = "H2048") {
        Add("cam0", Camera("21", model),
            "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=0;Trigger=On;" +
                parameters + "</DeviceSpecificString>");
        Create();
    }
    void Create() {
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        m_device->Open();
        m_grabber = m_device->GetStreamGrabber(0);
        if (m_grabber == nullptr)
            throw RUNTIME_EXCEPTION("There is no stream grabber");
        m_grabber->Open();
    }
    void Destroy() {
        m_grabber = nullptr;
        CTlFactory::GetInstance().DestroyDevice(std::exchange(m_device, nullptr));
        ForgetBuffers();
    }
    GenApi::INode* Node(const char* name) const { return m_device->GetNodeMap()->GetNode(name); }
    void Set(const char* name, const std::string& value) const {
        const GenApi::CValuePtr node = Node(name);
        node->FromString(value.c_str());
    }
    std::int64_t StreamValue(const char* name) const {
        const GenApi::CIntegerPtr node = m_grabber->GetNodeMap()->GetNode(name);
        return node->GetValue();
    }
    void Trigger(std::uint64_t frames) const {
        const GenApi::CIntegerPtr node = m_grabber->GetNodeMap()->GetNode("DebugData1");
        node->SetValue(static_cast<std::int64_t>(frames));
    }

    void Begin() {
        const auto size = static_cast<std::size_t>(StreamValue("PayloadSize"));
        for (std::size_t i = 0; i < kBuffers; ++i) {
            m_memory.push_back(std::make_unique<std::uint8_t[]>(size));
            m_handles.push_back(m_grabber->RegisterBuffer(m_memory.back().get(), size));
        }
        Trigger(0);
        m_grabber->PrepareGrab();
        for (const StreamBufferHandle handle : m_handles)
            m_grabber->QueueBuffer(handle);
    }
    void ForgetBuffers() {
        m_handles.clear();
        m_memory.clear();
    }
    void End() {
        m_grabber->FinishGrab();
        for (GrabResult left; m_grabber->RetrieveResult(left);) {
        }
        for (const StreamBufferHandle handle : m_handles)
            m_grabber->DeregisterBuffer(handle);
        ForgetBuffers();
        // The last result makes the grab count as prepared.
        m_grabber->Close();
        m_grabber->Open();
    }
    std::optional<GrabResult> Next() {
        GrabResult result;
        while (!m_grabber->RetrieveResult(result))
            if (!m_grabber->GetWaitObject().Wait(kPatience))
                return std::nullopt;
        return result;
    }
    static std::optional<std::uint64_t> NumberOf(const GrabResult& result) {
        return grabber::ReadFrameMark({static_cast<const std::uint8_t*>(result.buffer), result.payloadSize});
    }

    Removals m_removals;
    Vanto::IVantoDevice* m_device = nullptr;
    Vanto::IStreamGrabber* m_grabber = nullptr;
    std::vector<StreamBufferHandle> m_handles;

private:
    std::vector<std::unique_ptr<std::uint8_t[]>> m_memory;
};

}  // namespace integration
