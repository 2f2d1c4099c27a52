/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Takes named locks one behind the other: each argument names a pair of "a", "b", "c", such as "ab"; in capitals the
 * second one is only tried. "w" as the first is work that others wait for, as the second the wait for it; "s" is a lock
 * that is shared, "x" the same lock for one alone.
 */

#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "os/LockName.h"

namespace {

struct Lock {
    explicit Lock(const char* name) : m_name(&m_mutex, name) {}
    std::recursive_mutex m_mutex;
    os::LockName m_name;
};

std::shared_mutex g_shared;
const os::LockName g_sharedName(&g_shared, "s");

void Take(std::map<char, std::unique_ptr<Lock>>& locks, char name) {
    if (name == 'w') {
        os::AwaitWork("w");
    } else if (name == 's') {
        const std::shared_lock lock(g_shared);
    } else if (name == 'x') {
        const std::lock_guard lock(g_shared);
    } else if (name >= 'A' && name <= 'Z') {
        const std::unique_lock lock(locks[static_cast<char>(name - 'A' + 'a')]->m_mutex, std::try_to_lock);
    } else {
        const std::lock_guard lock(locks[name]->m_mutex);
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::map<char, std::unique_ptr<Lock>> locks;
    locks['a'] = std::make_unique<Lock>("a");
    locks['b'] = std::make_unique<Lock>("b");
    locks['c'] = std::make_unique<Lock>("c");
    for (int index = 1; index < argc; ++index) {
        if (argv[index][0] == 'w') {
            const os::AwaitedWork work("w");
            Take(locks, argv[index][1]);
        } else if (argv[index][0] == 's') {
            const std::shared_lock lock(g_shared);
            Take(locks, argv[index][1]);
        } else {
            const std::lock_guard lock(locks[argv[index][0]]->m_mutex);
            Take(locks, argv[index][1]);
        }
    }
    return 0;
}
