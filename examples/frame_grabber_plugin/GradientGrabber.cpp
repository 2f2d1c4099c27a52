/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A frame-grabber plug-in in one file: it draws a grey gradient that moves, 8 bits a pixel, where a real one would have
 * its board fill the memory
 */
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "vanto/FgPlugin.h"

namespace {

class GradientGrabber final : public Vanto::IFrameGrabber {
public:
    bool Init(const char*, Vanto::FgCallee* callee) override {
        m_callee = callee;
        m_width.handle = Watch("Width", m_width);
        m_height.handle = Watch("Height", m_height);
        if (m_width.handle != 0 && m_height.handle != 0)
            return true;
        m_error = "The camera does not tell the size of its images.";
        return false;
    }

    void Shutdown() override {
        StopGrab();
        m_callee->DeregisterNodeCallback(m_width.handle);
        m_callee->DeregisterNodeCallback(m_height.handle);
    }

    bool StartGrab() override {
        m_running = true;
        m_thread = std::thread([this] { Deliver(); });
        return true;
    }

    bool StopGrab() override {
        m_running = false;
        if (m_thread.joinable())
            m_thread.join();
        return true;
    }

    std::uint32_t GetLastErrorText(char* buffer, std::uint32_t size) override {
        if (buffer != nullptr)
            m_error.copy(buffer, std::min<std::size_t>(size, m_error.size()));
        return static_cast<std::uint32_t>(m_error.size());
    }

    std::uint64_t GetValue(std::uint32_t) override { return 0; }
    std::int32_t PoCLControl(std::uint32_t) override { return 0; }

private:
    struct Node {
        std::atomic<std::int64_t> value{0};
        Vanto::FgNodeCallbackHandle handle = 0;
    };

    Vanto::FgNodeCallbackHandle Watch(const char* name, Node& node) {
        const auto changed = [](std::int64_t value, void* context, std::uint32_t) {
            static_cast<Node*>(context)->value = value;
        };
        return m_callee->RegisterDeviceNodeCallback(name, changed, &node, 0);
    }

    void Deliver() {
        for (std::uint32_t tag = 1; m_running; ++tag) {
            const auto width = static_cast<std::size_t>(m_width.value);
            const auto height = static_cast<std::size_t>(m_height.value);
            m_pixels.resize(width * height);
            for (std::size_t i = 0; i < m_pixels.size(); ++i)
                m_pixels[i] = static_cast<std::uint8_t>(i % width + tag);

            Vanto::FgFrame frame{};
            frame.width = static_cast<std::uint32_t>(width);
            frame.lineCount = static_cast<std::int32_t>(height);
            frame.lineLength = width;
            frame.linePitch = width;
            frame.dataSize = m_pixels.size();
            frame.data = m_pixels.data();
            frame.frameTag = tag;
            m_callee->FrameDelivered(&frame);  // copied when this returns
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    Vanto::FgCallee* m_callee = nullptr;
    Node m_width;
    Node m_height;
    std::string m_error;
    std::atomic<bool> m_running{false};
    std::thread m_thread;
    std::vector<std::uint8_t> m_pixels;
};

}  // namespace

VANTO_FG_EXPORT Vanto::IFrameGrabber* CreateFrameGrabberObject(const char*) noexcept {
    return new (std::nothrow) GradientGrabber();
}

VANTO_FG_EXPORT void DestroyFrameGrabberObject(Vanto::IFrameGrabber* grabber) noexcept {
    delete static_cast<GradientGrabber*>(grabber);
}
