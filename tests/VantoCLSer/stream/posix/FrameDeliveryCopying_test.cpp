/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames that are being copied while something else happens
 */

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "../FrameDeliveryFixture.h"

namespace {

using namespace stream_test;
using namespace Vanto;

/// A page that can't be read at first: who reads it is held up until it is let go on. One at a time.
class HeldUpPage {
public:
    HeldUpPage() : m_size(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
        s_page = ::mmap(nullptr, m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        s_size = m_size;
        struct sigaction action {};
        action.sa_handler = &OnRead;
        ::sigaction(SIGSEGV, &action, &m_before);
    }
    ~HeldUpPage() {
        ::sigaction(SIGSEGV, &m_before, nullptr);
        ::munmap(s_page, m_size);
    }
    HeldUpPage(const HeldUpPage&) = delete;
    HeldUpPage& operator=(const HeldUpPage&) = delete;

    const void* Data() const { return s_page; }
    void WaitForReader() const {
        while (!s_isRead)
            std::this_thread::yield();
    }
    void LetGoOn() { s_mayGoOn = true; }

private:
    static void OnRead(int) {
        s_isRead = true;
        while (!s_mayGoOn)
            ::usleep(100);
        ::mprotect(s_page, s_size, PROT_READ);
    }

    static inline void* s_page = nullptr;
    static inline std::size_t s_size = 0;
    static inline std::atomic<bool> s_isRead{false};
    static inline std::atomic<bool> s_mayGoOn{false};

    const std::size_t m_size;
    struct sigaction m_before {};
};

// D copies a frame into a buffer that is queued again meanwhile. That starts the plug-in on T, with the grabber lock,
// for which D waits behind its copy; and the plug-in delivers there, into the same buffer.
TEST_F(FrameDelivery, InAStartOfThePluginDoesNotWaitForOneIntoTheSameBuffer) {
    HeldUpPage page;
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    PlainFrame frame = Frame(1);
    frame.data = page.Data();
    std::thread delivery([&] { m_plugin.Deliver(frame); });
    page.WaitForReader();
    m_grabber->CancelGrab();
    struct Context {
        PlainPlugin& plugin;
        HeldUpPage& page;
        PlainFrame frame;
    } context{m_plugin, page, Frame(2)};
    m_plugin->hookContext = &context;
    m_plugin->onStart = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        self.page.LetGoOn();
        self.plugin.Deliver(self.frame);
    };
    m_grabber->QueueBuffer(handle, nullptr);
    delivery.join();
    EXPECT_EQ(Retrieve().handle, handle);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StartGrab ");
}

}  // namespace
