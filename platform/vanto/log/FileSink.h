/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FileSink: log lines into a file
 */
#pragma once

#include <spdlog/sinks/base_sink.h>

#include <mutex>
#include <string>

#include "os/File.h"

namespace Vanto::tracelog {

/// Appends to a file. Opens it by the system's own means: spdlog's would let it take the place of a standard stream
/// that the process was started without. Thread-safe.
class FileSink final : public spdlog::sinks::base_sink<std::mutex> {
public:
    /// Throws spdlog::spdlog_ex when the file can't be written.
    explicit FileSink(const std::string& path);

private:
    void sink_it_(const spdlog::details::log_msg& message) override;
    void flush_() override;

    os::OpenFile m_file;
};

}  // namespace Vanto::tracelog
