/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lends lines of this machine to simulators that can't make any
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace MarlowSim {

/// Reached over TCP on the loopback interface; LineMessage.h says what is spoken there. Thread-bound.
class LineServer {
public:
    virtual ~LineServer() = default;

    /// \param[in] links Folder in which each line has a link, named as the line in lower case
    /// \throw std::system_error The system refuses a socket
    static std::unique_ptr<LineServer> Create(const std::filesystem::path& links);

    virtual std::uint16_t Port() const = 0;
    /// Serves until the process ends.
    [[noreturn]] virtual void Run() = 0;
};

}  // namespace MarlowSim
