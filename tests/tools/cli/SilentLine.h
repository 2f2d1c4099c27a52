/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line without a camera
 */
#pragma once

#include <filesystem>

namespace tools_test {

/// A pseudo-terminal on which nobody answers, linked under a path.
class SilentLine {
public:
    explicit SilentLine(const std::filesystem::path& link);
    ~SilentLine();
    SilentLine(const SilentLine&) = delete;
    SilentLine& operator=(const SilentLine&) = delete;

private:
    std::filesystem::path m_link;
    int m_master;
};

}  // namespace tools_test
