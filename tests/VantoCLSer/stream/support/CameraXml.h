/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description of a small camera
 */
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace stream_test {

/// A camera whose values are kept in its node map. Nodes can be left out or replaced; a port "Device" is there.
class CameraXml {
public:
    CameraXml();
    CameraXml& Without(const std::string& name);
    /// Replaces or adds a node.
    CameraXml& With(const std::string& name, const std::string& xml);
    std::string Text() const;

    static std::string Integer(const std::string& name, std::int64_t value);
    /// An uncached 4-byte register, big-endian.
    static std::string Register(const std::string& name, std::int64_t address);

private:
    std::map<std::string, std::string> m_nodes;
};

}  // namespace stream_test
