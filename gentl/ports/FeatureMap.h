/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureMap: features as registers, and the description that names them
 */
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace gentl {

/// One feature of a module. What is read changes at any time, so nothing of it is cached.
struct Feature {
    enum class Kind { kText, kInteger, kBoolean, kEnumeration, kCommand };
    struct Entry {
        std::string name;
        std::int64_t value;
    };

    Kind kind = Kind::kInteger;
    std::string name;
    std::string category;
    std::string toolTip;
    std::string visibility = "Expert";
    bool standard = true;        ///< named by a standard, or one of our own
    std::string selector;        ///< the feature that selects among several values of this one
    std::vector<Entry> entries;  ///< of an enumeration
    std::int64_t minimum = 0;    ///< of an integer that can be written
    std::int64_t maximum = INT64_MAX;
    std::string unit;

    std::function<std::string()> readText;
    std::function<std::int64_t()> readInteger;
    std::function<void(std::int64_t)> writeInteger;  ///< also a command's action
};

/// Gives features addresses, one behind the other, and serves them.
class FeatureMap {
public:
    /// How the registers of a map are laid out.
    struct Layout {
        std::string portName;
        std::uint64_t base = 0x10000;  ///< address of the first register
        bool bigEndian = false;
    };

    FeatureMap(Layout layout, std::vector<Feature> features);

    const std::vector<Feature>& Features() const noexcept { return m_features; }
    bool Contains(std::uint64_t address) const noexcept;
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) const;
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) const;

    /// The nodes of all features without their categories.
    std::string Nodes() const;
    /// The categories with the names of their features, and the names of the categories.
    std::string Categories(std::vector<std::string>& names) const;

private:
    struct Register {
        const Feature* feature;
        std::size_t length;
    };

    std::map<std::uint64_t, Register>::const_iterator Find(std::uint64_t address) const;
    std::vector<std::uint8_t> BytesOf(const Register& one) const;
    void Store(const Register& one, std::span<const std::uint8_t> bytes) const;
    std::string NodeOf(std::uint64_t address, const Register& one) const;
    std::string SelectedBy(const std::string& name) const;

    const Layout m_layout;
    const std::vector<Feature> m_features;
    std::map<std::uint64_t, Register> m_registers;
};

/// A whole description of such a map.
std::string DescriptionOf(const FeatureMap& map, const std::string& modelName, const std::string& portName);

}  // namespace gentl
