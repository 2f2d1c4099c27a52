/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FileSink: log lines into a file
 */

#include "log/FileSink.h"

#include <cerrno>

namespace Vanto::tracelog {

FileSink::FileSink(const std::string& path) : m_file(os::OpenFileToAppend(path)) {
    if (!m_file)
        throw spdlog::spdlog_ex("Failed opening file " + path + " for writing", errno);
}

void FileSink::sink_it_(const spdlog::details::log_msg& message) {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    if (std::fwrite(line.data(), 1, line.size(), m_file.get()) != line.size())
        throw spdlog::spdlog_ex("Failed writing a line", errno);
}

void FileSink::flush_() {
    std::fflush(m_file.get());
}

}  // namespace Vanto::tracelog
