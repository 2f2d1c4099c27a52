/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Another program, whose output a test reads
 */
#pragma once

#include <cstdio>
#include <string>
#include <utility>

namespace integration {

#ifdef _WIN32
inline std::FILE* OpenPipe(const std::string& command) {
    return ::_popen(command.c_str(), "r");
}
inline int ClosePipe(std::FILE* pipe) {
    return ::_pclose(pipe);
}
#else
inline std::FILE* OpenPipe(const std::string& command) {
    return ::popen(command.c_str(), "r");
}
inline int ClosePipe(std::FILE* pipe) {
    const int status = ::pclose(pipe);
    return status >= 0 && (status & 0x7F) == 0 ? status >> 8 : -1;
}
#endif

/// A run of it, whose output and errors come line by line.
class Program {
public:
    /// What a shell takes: the program's file, without quotation marks, and its arguments.
    explicit Program(const std::string& command) : m_pipe(OpenPipe(command + " 2>&1")) {}
    ~Program() {
        if (m_pipe != nullptr)
            ClosePipe(m_pipe);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// With its newline; empty at the end.
    std::string ReadLine() {
        std::string line;
        for (int character = 0; character != '\n' && (character = std::fgetc(m_pipe)) != EOF;)
            line += static_cast<char>(character);
        return line;
    }
    std::string ReadAll() {
        std::string text;
        for (std::string line = ReadLine(); !line.empty(); line = ReadLine())
            text += line;
        return text;
    }
    /// Waits for its end; -1 where a signal ended it.
    int ExitCode() { return ClosePipe(std::exchange(m_pipe, nullptr)); }

private:
    std::FILE* m_pipe;
};

}  // namespace integration
