/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Output: what a command prints, and how
 */
#pragma once

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

#include "os/LockName.h"

namespace tools {

/// How a piece of text is shown on a terminal; plain text elsewhere.
enum class Style { kPlain, kBold, kDim, kGood, kWarning, kBad };

/// Standard output and standard error of a command, with colours and widths where there is a terminal. The streams
/// must outlive it. Thread-bound.
class Output {
public:
    Output(std::FILE* out, std::FILE* err);

    /// Results, as they are.
    void Print(std::string_view text);
    void Line(std::string_view text = {});
    /// A result that people read rather than programs: wrapped at blanks to the width of the terminal, where there is
    /// one. \param[in] indent Put before all lines but the first
    void Prose(std::string_view text, std::string_view indent = {});
    /// Messages for the person at the keyboard, beside the results.
    void Note(std::string_view text, std::string_view indent = {});
    void Warn(std::string_view text);
    void Error(std::string_view text, std::string_view hint = {});

    /// Text in a style, as standard output shows it.
    std::string Styled(Style style, std::string_view text) const;
    bool HasColours() const noexcept { return m_outColours; }
    /// Whether standard output's terminal shows sixel images, and colours are wanted. Asks it: see ShowsSixels.
    bool ShowsSixels();
    /// Columns of standard output's terminal; 0 when it is none.
    int Width() const noexcept { return m_width; }
    /// Whether standard error is a terminal, so that progress can be shown on it.
    bool ShowsProgress() const noexcept { return m_errTerminal; }
    std::FILE* Err() const noexcept { return m_err; }
    /// Shows a text in the last line of the terminal behind standard error, in place of the one before; an empty one
    /// clears the line. What does not fit is cut. Nothing where there is no terminal. Any thread.
    void ShowStatus(std::string_view text);

    /// Hands everything to the system; false when something could not be written.
    bool Flush();
    /// Whether what could not be written was for a reader that is gone, as after "| head": that is no news to anybody.
    bool ReaderLeft() const noexcept { return m_readerLeft; }

private:
    void Tell(std::string_view start, std::string_view text, std::string_view indent = {});
    void ClearStatus();
    void FlushResults();
    void Failed();
    std::string StyledFor(bool colours, Style style, std::string_view text) const;
    void Write(std::FILE* stream, std::string_view text);

    std::mutex m_errLock;  // standard error has the status, which another thread may show
    [[no_unique_address]] const os::LockName m_errLockName{&m_errLock, "standard error"};
    bool m_hasStatus = false;
    std::FILE* m_out;
    std::FILE* m_err;
    int m_width;
    bool m_errTerminal;
    bool m_outColours;
    bool m_errColours;
    bool m_failed = false;
    bool m_readerLeft = false;
};

}  // namespace tools
