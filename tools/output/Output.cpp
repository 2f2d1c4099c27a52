/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Output: what a command prints, and how
 */
#include "output/Output.h"

#include <algorithm>
#include <cerrno>

#include "output/Text.h"
#include "system/Environment.h"
#include "system/Terminal.h"

namespace tools {

namespace {

bool WantsColours(std::FILE* stream) {
    const std::string terminal = GetEnvironment("TERM").value_or("");
    return GetEnvironment("NO_COLOR").value_or("").empty() && terminal != "dumb" && IsTerminal(stream);
}

const char* Sequence(Style style) {
    switch (style) {
        case Style::kBold:
            return "\033[1m";
        case Style::kDim:
            return "\033[2m";
        case Style::kGood:
            return "\033[32m";
        case Style::kWarning:
            return "\033[33m";
        case Style::kBad:
            return "\033[31m";
        case Style::kPlain:
            break;
    }
    return "";
}

}  // namespace

Output::Output(std::FILE* out, std::FILE* err)
    : m_out(out),
      m_err(err),
      m_width(TerminalWidth(out)),
      m_errTerminal(IsTerminal(err)),
      m_outColours(WantsColours(out)),
      m_errColours(WantsColours(err)) {}

void Output::Write(std::FILE* stream, std::string_view text) {
    if (!text.empty() && std::fwrite(text.data(), 1, text.size(), stream) != text.size() && stream == m_out)
        Failed();
}

void Output::Failed() {
    m_readerLeft = m_readerLeft || errno == EPIPE;
    m_failed = true;
}

// A failure shows once only: it must not be lost where messages have results written out before them.
void Output::FlushResults() {
    if (std::fflush(m_out) != 0)
        Failed();
}

void Output::Print(std::string_view text) {
    Write(m_out, text);
}

void Output::Line(std::string_view text) {
    Write(m_out, text);
    Write(m_out, "\n");
}

bool Output::ShowsSixels() {
    FlushResults();
    return m_outColours && tools::ShowsSixels(m_out);
}

void Output::Prose(std::string_view text, std::string_view indent) {
    Line(Wrapped(text, static_cast<std::size_t>(m_width), indent));
}

void Output::Note(std::string_view text, std::string_view indent) {
    Tell({}, text, indent);
}

void Output::Warn(std::string_view text) {
    Tell(StyledFor(m_errColours, Style::kWarning, "warning: "), text);
}

/**
 * \brief Print an error and what to do about it on standard error
 * \param[in] text What went wrong; control characters are made visible
 * \param[in] hint What to do about it; may be empty
 */
void Output::Error(std::string_view text, std::string_view hint) {
    Tell(StyledFor(m_errColours, Style::kBad, "error: "), PrintableLines(text));
    if (!hint.empty())
        Note(PrintableLines(hint));
}

void Output::Tell(std::string_view start, std::string_view text, std::string_view indent) {
    FlushResults();
    const std::lock_guard guard(m_errLock);
    ClearStatus();
    Write(m_err, start);
    Write(m_err, Wrapped(text, static_cast<std::size_t>(TerminalWidth(m_err)), indent, DisplayWidth(start)));
    Write(m_err, "\n");
}

void Output::ShowStatus(std::string_view text) {
    if (!m_errTerminal)
        return;
    const std::lock_guard guard(m_errLock);
    if (text.empty()) {
        ClearStatus();
    } else {
        // A line that fills the last column would go on in the next one, and could not be written over.
        const auto columns = static_cast<std::size_t>(std::max(TerminalWidth(m_err), 2)) - 1;
        Write(m_err, "\r" + Shortened(text, columns) + "\033[K");
        m_hasStatus = true;
    }
    std::fflush(m_err);
}

void Output::ClearStatus() {
    if (m_hasStatus)
        Write(m_err, "\r\033[K");
    m_hasStatus = false;
}

std::string Output::Styled(Style style, std::string_view text) const {
    return StyledFor(m_outColours, style, text);
}

std::string Output::StyledFor(bool colours, Style style, std::string_view text) const {
    if (!colours || style == Style::kPlain || text.empty())
        return std::string(text);
    return Sequence(style) + std::string(text) + "\033[0m";
}

bool Output::Flush() {
    std::fflush(m_err);
    FlushResults();
    return !m_failed;
}

}  // namespace tools
