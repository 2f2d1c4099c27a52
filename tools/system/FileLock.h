/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FileLock: one process at a time changes a file
 */
#pragma once

#include <filesystem>
#include <memory>

namespace tools {

/// Holds a lock on a file that exists for nothing else, as long as this lives; made where it is missing. Waits for
/// whoever holds it. Where the system gives no lock, there is none: it only keeps two changes from getting lost in one
/// another.
class FileLock {
public:
    explicit FileLock(const std::filesystem::path& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace tools
