/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The built library and a port of it
 */
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "../../support/TemporaryFolder.h"
#include "Support.h"
#include "os/Environment.h"

namespace ClSerTtyTest {

class ClSerTtyTest : public testing::Test {
protected:
    ClSerTtyTest() {
        os::SetEnvironment("CLSERTTY_PATH", m_folder.Path());
        m_end = std::make_unique<SerialEnd>(Link("cam0"));
    }

    std::filesystem::path Link(const std::string& name) const { return m_folder / name; }

    hSerRef Open(const std::string& name = "cam0") const {
        hSerRef ref = nullptr;
        EXPECT_EQ(m_library.SerialInit(m_library.IndexOf(name), &ref), CL_ERR_NO_ERR);
        EXPECT_NE(ref, nullptr);
        return ref;
    }

    std::int32_t Read(hSerRef ref, std::string& bytes, std::uint32_t timeoutMs = 10000) const {
        auto size = static_cast<std::uint32_t>(bytes.size());
        const std::int32_t code = m_library.SerialRead(ref, bytes.data(), &size, timeoutMs);
        EXPECT_EQ(size, bytes.size());
        return code;
    }

    std::int32_t Write(hSerRef ref, std::string bytes, std::uint32_t timeoutMs = 10000) const {
        auto size = static_cast<std::uint32_t>(bytes.size());
        return m_library.SerialWrite(ref, bytes.data(), &size, timeoutMs);
    }

    test_support::TemporaryFolder m_folder;
    std::unique_ptr<SerialEnd> m_end;
    SerialLibrary m_library;
};

}  // namespace ClSerTtyTest
