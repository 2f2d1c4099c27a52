/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fetched descriptions on disk
 */
#pragma once

#include <optional>
#include <string>

namespace CLProtocol {

class XmlCache {
public:
    static std::string Folder();

    explicit XmlCache(std::string folder) : m_folder(std::move(folder)) {}

    std::optional<std::string> Load(const std::string& key) const;
    void Store(const std::string& key, const std::string& xml) const;

private:
    std::string PathOf(const std::string& key) const;

    std::string m_folder;
};

}  // namespace CLProtocol
