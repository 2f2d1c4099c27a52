/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the names that the plug-in shows to the system's loader
 */

#include <cxxabi.h>
#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Vanto {
namespace {

class ElfFile {
public:
    explicit ElfFile(const std::string& path) {
        m_bytes.resize(std::filesystem::file_size(path));
        std::ifstream(path, std::ios::binary).read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
    }

    // Names of what the file defines for others.
    std::set<std::string> Exports() const {
        std::set<std::string> names;
        const auto header = At<Elf64_Ehdr>(0);
        for (std::size_t index = 0; index < header.e_shnum; ++index) {
            const auto section = Section(header, index);
            if (section.sh_type != SHT_DYNSYM)
                continue;
            const auto strings = Section(header, section.sh_link);
            for (std::size_t offset = 0; offset < section.sh_size; offset += sizeof(Elf64_Sym)) {
                const auto symbol = At<Elf64_Sym>(section.sh_offset + offset);
                if (symbol.st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) != STB_LOCAL)
                    names.insert(Demangle(m_bytes.data() + strings.sh_offset + symbol.st_name));
            }
        }
        return names;
    }

private:
    template <class T>
    T At(std::size_t offset) const {
        T value{};
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }
    Elf64_Shdr Section(const Elf64_Ehdr& header, std::size_t index) const {
        return At<Elf64_Shdr>(header.e_shoff + index * sizeof(Elf64_Shdr));
    }
    static std::string Demangle(const char* name) {
        int status = 0;
        const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                          std::free);
        return text ? text.get() : name;
    }

    std::vector<char> m_bytes;
};

bool IsOfTheDeviceInfo(const std::string& name) {
    constexpr char kClass[] = "Vanto::CVantoCLSerDeviceInfo";
    return name.starts_with(std::string(kClass) + "::") || name == std::string("vtable for ") + kClass ||
           name == std::string("typeinfo for ") + kClass || name == std::string("typeinfo name for ") + kClass;
}

class Exports : public testing::Test {
protected:
    const std::set<std::string> m_names = ElfFile(VANTO_TEST_PLUGIN).Exports();
};

TEST_F(Exports, AreThreeFunctionsAndTheDeviceInfo) {
    std::vector<std::string> others;
    for (const std::string& name : m_names) {
        if (!IsOfTheDeviceInfo(name))
            others.push_back(name);
    }
    EXPECT_THAT(others, testing::UnorderedElementsAre("GetTLInfoList", "Create", "Destroy"));
}

TEST_F(Exports, HoldTheWholeDeviceInfo) {
    const std::string scope = "Vanto::CVantoCLSerDeviceInfo::";
    std::vector<std::string> wanted = {scope + "CVantoCLSerDeviceInfo()",
                                       scope + "CVantoCLSerDeviceInfo(Vanto::CDeviceInfo const&)",
                                       scope + "CVantoCLSerDeviceInfo(Vanto::CVantoCLSerDeviceInfo const&)",
                                       scope + "operator=(Vanto::CVantoCLSerDeviceInfo const&)",
                                       scope + "~CVantoCLSerDeviceInfo()",
                                       "vtable for Vanto::CVantoCLSerDeviceInfo",
                                       "typeinfo for Vanto::CVantoCLSerDeviceInfo"};
    for (const char* property : {"PortID", "DeviceID", "InitialBaudRate", "DeviceXMLFileOverride",
                                 "DeviceSpecificString", "PortSpecificString"}) {
        wanted.push_back(scope + "Get" + property + "() const");
        wanted.push_back(scope + "Set" + property + "(GenICam::gcstring const&)");
        wanted.push_back(scope + "Is" + property + "Available() const");
    }
    for (const std::string& name : wanted)
        EXPECT_TRUE(m_names.contains(name)) << name;
}

}  // namespace
}  // namespace Vanto
