/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A terminal for one test
 */
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tools_test {

/// A pseudo-terminal to print to, and what was printed.
class PseudoTerminal {
public:
    explicit PseudoTerminal(unsigned short columns);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// What the other side of the terminal sends, a person or the terminal itself. It is not shown.
    void Type(std::string_view text) const;
    std::FILE* Stream() const { return m_stream; }
    /// What was printed so far, lines ending in "\n".
    std::string Text();

private:
    int m_master = -1;
    std::FILE* m_stream = nullptr;
};

}  // namespace tools_test
