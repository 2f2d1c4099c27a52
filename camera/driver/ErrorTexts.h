/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ErrorTexts: what went wrong last, per connection and per thread
 */
#pragma once

#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "CLProtocol/CLProtocolC.h"
#include "os/LockName.h"

namespace marlow {

/// Thread-safe; keeps the newest entries only.
class ErrorTexts {
public:
    void Remember(CLUINT32 cookie, CLINT32 code, const std::string& text);
    std::optional<std::string> Find(CLUINT32 cookie, CLINT32 code) const;
    void Clear();

private:
    struct Entry {
        std::thread::id thread;
        CLUINT32 cookie;
        CLINT32 code;
        std::string text;
    };

    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "driver's texts"};
    std::list<Entry> m_entries;  // newest first, one per thread and cookie
};

}  // namespace marlow
