/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in files and archives
 */

#include <filesystem>

#include "LoadingFixture.h"
#include "os/Environment.h"
#include "os/Path.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class DescriptionFiles : public Loading {};

TEST_F(DescriptionFiles, ReadsFiles) {
    map._LoadXMLFromFile(File("a b.xml", Describe("<Integer Name='A'><Value>3</Value></Integer>")).c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 3);
}

TEST_F(DescriptionFiles, TakesFileNamesInTheCodePageInUse) {
    const std::filesystem::path plain = File("x.xml", Describe(""));
    const std::filesystem::path named = plain.parent_path() / u8"Größe.xml";
    std::filesystem::rename(plain, named);
    map._LoadXMLFromFile(os::ToText(named).c_str());
    EXPECT_NE(map._GetNode("Device"), nullptr);
}

TEST_F(DescriptionFiles, ReplacesEnvironmentVariablesInFileNames) {
    const std::string file = File("x.xml", Describe(""));
    os::SetEnvironment("GENAPI_TEST_FOLDER", std::filesystem::path(file).parent_path().string());
    map._LoadXMLFromFile("$(GENAPI_TEST_FOLDER)/x.xml");
    EXPECT_NE(map._GetNode("Device"), nullptr);
}

TEST_F(DescriptionFiles, RefusesFilesThatAreNotThere) {
    EXPECT_THROW(map._LoadXMLFromFile(Missing("file.xml").c_str()), RuntimeException);
}

TEST_F(DescriptionFiles, ReadsArchives) {
    const std::string zip =
        Archive({{"readme.txt", "hello"}, {"camera.XML", Describe("<Integer Name='A'><Value>3</Value></Integer>")}});
    map._LoadXMLFromZIPData(zip.data(), zip.size());
    EXPECT_EQ(Integer("A")->GetValue(), 3);
    map._LoadXMLFromZIPFile(File("c.zip", zip).c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 3);
    map._LoadXMLFromFile(File("d.zip", zip).c_str());
    EXPECT_EQ(Integer("A")->GetValue(), 3);
}

TEST_F(DescriptionFiles, RefusesArchivesThatAreNone) {
    const std::string text = "PK\3\4 this is no archive";
    EXPECT_THROW(map._LoadXMLFromZIPData(text.data(), text.size()), RuntimeException);
    EXPECT_THROW(map._LoadXMLFromZIPData(nullptr, 0), InvalidArgumentException);
    const std::string empty = Archive({{"readme.txt", "hello"}});
    EXPECT_THROW(map._LoadXMLFromZIPData(empty.data(), empty.size()), RuntimeException);
    std::string damaged = Archive({{"a.xml", Describe(std::string(5000, ' '))}});
    damaged.resize(damaged.size() / 2);
    EXPECT_THROW(map._LoadXMLFromZIPData(damaged.data(), damaged.size()), RuntimeException);
}

TEST_F(DescriptionFiles, NamesTheFile) {
    const std::string file = File("bad.xml", "<RegisterDescription");
    try {
        map._LoadXMLFromFile(file.c_str());
        FAIL() << "loaded";
    } catch (const RuntimeException& exception) {
        EXPECT_EQ(std::string(exception.GetDescription()).substr(0, file.size() + 1), file + "(");
    }
}

TEST_F(DescriptionFiles, RefusedArchivesNameTheirFile) {
    const std::string good = Archive({{"a.xml", Describe(std::string(5000, ' '))}});
    const std::vector<std::string> refused = {std::string("PK\3\4", 4),        Archive({{"readme.txt", "hello"}}),
                                              Archive({{"a.xml", ""}}),        Archive({{"a.xml", "nonsense"}}),
                                              good.substr(0, good.size() / 2), good.substr(0, good.size() - 10)};
    for (const std::string& data : refused) {
        const std::string path = File("bad.zip", data);
        try {
            map._LoadXMLFromZIPFile(path.c_str());
            ADD_FAILURE() << data.size();
        } catch (const RuntimeException& exception) {
            EXPECT_NE(std::string(exception.GetDescription()).find("bad.zip("), std::string::npos)
                << exception.GetDescription();
        }
    }
    EXPECT_THROW(map._LoadXMLFromZIPFile("/nowhere/at/all.zip"), RuntimeException);
    EXPECT_THROW(map._LoadXMLFromZIPData(nullptr, 10), InvalidArgumentException);
    EXPECT_THROW(map._LoadXMLFromZIPData("", 0), RuntimeException);
}

TEST_F(DescriptionFiles, SurvivesChangedBytesOfAnArchive) {
    const std::string good = Archive({{"a.xml", Describe("<Integer Name='A'><Value>3</Value></Integer>")}});
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string changed = good;
        changed[at] = static_cast<char>(changed[at] ^ 0x55);
        CNodeMapRef fresh;
        try {
            fresh._LoadXMLFromZIPData(changed.data(), changed.size());
            EXPECT_NE(fresh._GetNode("A"), nullptr);
        } catch (const RuntimeException& exception) {
            EXPECT_NE(std::string(exception.GetDescription()), "");
        }
    }
}

}  // namespace genapitest
