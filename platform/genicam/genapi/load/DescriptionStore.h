/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The descriptions that node maps use now
 */
#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

#include "os/LockName.h"
#include "schema/Description.h"
#include "schema/TextFingerprint.h"

namespace GenApi {

/// What a description was made of: a text, and one that was injected.
struct DescriptionKey {
    TextFingerprint text;
    TextFingerprint injected;
    bool isInjected = false;

    friend bool operator==(const DescriptionKey&, const DescriptionKey&) = default;
};

/// Lets equal cameras share one description, as long as one of their maps lives. Thread-safe.
class DescriptionStore {
public:
    static DescriptionStore& Instance();

    /// The description that was made of the same texts, null when no map has it now.
    std::shared_ptr<const Description> Find(const DescriptionKey& key);
    /// Keeps a new description for others; returns the one of another thread that was quicker.
    std::shared_ptr<const Description> Keep(const DescriptionKey& key, std::shared_ptr<const Description> description);

private:
    struct Hash {
        std::size_t operator()(const DescriptionKey& key) const noexcept {
            return static_cast<std::size_t>(key.text.first ^ key.injected.second);
        }
    };

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "descriptions"};
    std::unordered_map<DescriptionKey, std::weak_ptr<const Description>, Hash> m_descriptions;
};

}  // namespace GenApi
