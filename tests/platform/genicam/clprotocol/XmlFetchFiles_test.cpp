/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of descriptions in files beside the driver
 */

#include "XmlFetch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "CLProtocol/CLPort.h"
#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;

constexpr char kCamera[] = "Marlow#Heron#H2048#1";
constexpr char kId[] = "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.2.0";
constexpr char kXml[] = "<RegisterDescription ModelName=\"H2048\"/>";

// A location with a copy of the driver, and so with files of its own.
class DescriptionFile : public testing::Test {
public:
    DescriptionFile() {
        std::filesystem::create_directories(os::FolderOf(DriverPath()));
        std::filesystem::copy_file(scripted::DriverPath(), DriverPath());
        scripted::DriverScript& driver = scripted::DriverScriptOf(DriverPath());
        driver.asksLine = false;
        driver.deviceId = kCamera;
        driver.xmlIds = kId;
        driver.xml = {{kId, kXml}};
        port.Connect("Scripted#Port0", folder.Path() + "#" + scripted::DriverName("Copy") + "#" + kCamera);
    }
    ~DescriptionFile() noexcept override {}

protected:
    std::string DriverPath() const {
        return folder / (scripted::SystemFolder() + os::kPathSeparator + scripted::DriverName("Copy"));
    }

    scripted::Environment environment;
    scripted::TemporaryFolder folder;
    CCLPort port;
};

TEST_F(DescriptionFile, IsTakenWhenItIsBetter) {
    folder.Write("SchemaVersion.1.1@Marlow#Heron#H2048@XMLVersion.1.0.0.xml", "<File/>");
    EXPECT_EQ(port.GetXML(true), "<File/>");
}

TEST_F(DescriptionFile, IsTakenWhenItIsTheSame) {
    folder.Write(std::string(kId) + ".xml", "<File/>");
    EXPECT_EQ(port.GetXML(true), "<File/>");
    GenICam::gcstring_vector ids;
    port.GetXMLIDs(ids);
    EXPECT_EQ(ids.size(), 1u);
}

TEST_F(DescriptionFile, MayLieBesideTheDriver) {
    folder.Write(scripted::SystemFolder() + "/" + kId + ".xml", "<File/>");
    EXPECT_EQ(port.GetXML(true), "<File/>");
    folder.Write(std::string(kId) + ".xml", "<First/>");
    EXPECT_EQ(port.GetXML(true), "<First/>");
}

TEST_F(DescriptionFile, IsFoundThroughTheSystemsFolderAsWell) {
    port.Disconnect();
    port.Connect("Scripted#Port0",
                 folder / scripted::SystemFolder() + "#" + scripted::DriverName("Copy") + "#" + kCamera);
    folder.Write(std::string(kId) + ".xml", "<File/>");
    EXPECT_EQ(port.GetXML(true), "<File/>");
}

TEST_F(DescriptionFile, HelpsACameraThatHasNone) {
    scripted::DriverScriptOf(DriverPath()).onGetXmlIds = [](char*, std::uint32_t*) { return -20102; };
    EXPECT_THROW(port.GetXML(true), GenICam::AccessException);
    folder.Write(std::string(kId) + ".xml", "<File/>");
    EXPECT_EQ(port.GetXML(true), "<File/>");
    scripted::DriverScriptOf(DriverPath()).onGetXmlIds = [](char*, std::uint32_t*) { return -20103; };
    EXPECT_THROW(port.GetXML(true), GenICam::GenericException);
}

TEST_F(DescriptionFile, MayBeLong) {
    const std::string xml = "<File>" + std::string(3 << 20, ' ') + "</File>";
    folder.Write(std::string(kId) + ".xml", xml);
    EXPECT_EQ(port.GetXML(true), xml);
}

TEST_F(DescriptionFile, IsLeftWhenItIsWorseOrOfNoUse) {
    for (const char* name :
         {"SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.1.9.xml", "SchemaVersion.1.1@Marlow@XMLVersion.9.0.0.xml",
          "SchemaVersion.1.1@Marlow#Heron#H4096@XMLVersion.1.0.0.xml",
          "SchemaVersion.1.9@Marlow#Heron@XMLVersion.9.0.xml", "other.xml", ".xml"})
        folder.Write(name, "<File/>");
    EXPECT_EQ(port.GetXML(true), kXml);
}

}  // namespace
