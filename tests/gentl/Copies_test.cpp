/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The producer's file loaded and unloaded many times, and twice in one process
 */
#include <filesystem>

#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

/// A file of the same content is a producer of its own to the loader. It lies beside the other, from where both find
/// the serial libraries.
class Copies : public Consumer {
protected:
    Copies() {
        std::filesystem::copy_file(VANTO_GENTL_PRODUCER, m_path);
        AddCamera();
    }
    ~Copies() override {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    static std::uint32_t InterfacesOf(const os::Library& copy) {
        TL_HANDLE opened = nullptr;
        std::uint32_t count = 0;
        EXPECT_EQ(copy.Get<decltype(::GCInitLib)>("GCInitLib")(), GC_ERR_SUCCESS);
        EXPECT_EQ(copy.Get<decltype(::TLOpen)>("TLOpen")(&opened), GC_ERR_SUCCESS);
        EXPECT_EQ(copy.Get<decltype(::TLUpdateInterfaceList)>("TLUpdateInterfaceList")(opened, nullptr, 1000),
                  GC_ERR_SUCCESS);
        EXPECT_EQ(copy.Get<decltype(::TLGetNumInterfaces)>("TLGetNumInterfaces")(opened, &count), GC_ERR_SUCCESS);
        EXPECT_EQ(copy.Get<decltype(::GCCloseLib)>("GCCloseLib")(), GC_ERR_SUCCESS);
        return count;
    }

    // Of a name that no other test has.
    const std::string m_path =
        std::string(VANTO_GENTL_PRODUCER) + "." + std::filesystem::path(m_folder.Path()).filename().string();
};

TEST_F(Copies, WorkBesideEachOther) {
    OpenStream();
    Announce();
    QueueAll();
    Register();
    Start();
    const os::Library copy(m_path);
    EXPECT_EQ(InterfacesOf(copy), 1U);
    EXPECT_NE(Next(), nullptr);
    Stop();
}

TEST_F(Copies, AreLoadedAndUnloadedAsOftenAsOneLikes) {
    const std::uint32_t times = NumberFromEnvironment("VANTO_GENTL_LOADS", 50);
    for (std::uint32_t i = 0; i < times && !HasFailure(); ++i) {
        const os::Library copy(m_path);
        EXPECT_EQ(InterfacesOf(copy), 1U);
    }
}

}  // namespace

}  // namespace gentl_test
