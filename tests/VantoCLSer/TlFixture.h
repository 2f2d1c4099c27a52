/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the transport layer have in common
 */
#pragma once

#include "VantoCLSer/VantoCLSerTL.h"

#include <chrono>
#include <filesystem>

#include "tests/VantoCLSer/Fixture.h"

namespace clser_test {

constexpr char kLoading[] = "Trying to load CLBindings from file '%s'";

class TlTest : public PluginTest {
protected:
    // Gives the file another time than it had at the last reading.
    void Touch() {
        m_age += std::chrono::hours(1);
        std::filesystem::last_write_time(ConfigurationPath(), m_start - m_age);
    }
    std::size_t Readings() const { return CountFormat(kLoading); }

    const std::filesystem::file_time_type m_start = std::filesystem::file_time_type::clock::now();
    std::chrono::hours m_age{0};
    Vanto::CVantoCLSerTl m_tl;
};

}  // namespace clser_test
