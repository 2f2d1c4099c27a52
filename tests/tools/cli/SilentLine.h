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

    /// Keeps others from opening the line, as a program that uses it does.
    void Hold();

private:
    std::filesystem::path m_link;
    int m_master;
    int m_held = -1;
};

}  // namespace tools_test
