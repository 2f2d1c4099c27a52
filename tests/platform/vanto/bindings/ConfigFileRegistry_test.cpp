/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/ConfigFileRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "../TestSupport.h"
#include "Base/GCException.h"

namespace {

using namespace Vanto;
using testing::HasSubstr;

CDeviceInfo Camera() {
    CDeviceInfo info;
    info.SetDeviceClass("MarlowCameraLink");
    info.SetVendorName("Marlow");
    info.SetModelName("H2048");
    info.SetSerialNumber("12345");
    return info;
}

// On Windows a path is absolute that names a drive.
std::string Absolute(const std::string& path) {
    return std::filesystem::current_path().root_name().string() + path;
}

class ConfigFileRegistry : public testing::Test {
protected:
    CConfigFileRegistry::CBinding Bind(const std::string& bindings, const CDeviceInfo& info = Camera()) {
        m_folder.Write("bindings.xml", "<DescriptionBindings>\n" + bindings + "</DescriptionBindings>\n");
        const ScopedVariable variable("VANTO_XML_BINDINGS", m_path);
        return CConfigFileRegistry::GetInstance().GetXmlFileBinding(info);
    }
    std::string FailureOfText(const std::string& text) {
        m_folder.Write("bindings.xml", text);
        const ScopedVariable variable("VANTO_XML_BINDINGS", m_path);
        try {
            CConfigFileRegistry::GetInstance().GetXmlFileBinding(Camera());
        } catch (const GenICam::RuntimeException& error) {
            return error.GetDescription();
        }
        return "no exception";
    }
    std::string Malformed(const std::string& place, const std::string& fault) const {
        return "The registry file '" + m_path + "' is malformed in " + place + ": " + fault + ".";
    }
    // Which of several entries, each with a description file of its own name, wins.
    std::string Winner(const std::string& bindings) {
        const auto binding = Bind(bindings);
        return binding.hasDescriptionFile ? std::filesystem::path(binding.descriptionFile.str()).filename().string()
                                          : "none";
    }

    const TemporaryFolder m_folder;
    const std::string m_path = m_folder / "bindings.xml";
};

TEST_F(ConfigFileRegistry, UsesTheCamerasOwnDescriptionWithoutConfiguration) {
    const ScopedVariable root("VANTO_ROOT", m_folder.Path());
    const ScopedVariable variable("VANTO_XML_BINDINGS", "");
    const auto binding = CConfigFileRegistry::GetInstance().GetXmlFileBinding(Camera());
    EXPECT_TRUE(binding.useDeviceDescription);
    EXPECT_FALSE(binding.hasDescriptionFile);
    EXPECT_FALSE(binding.hasMergeFile);
}

TEST_F(ConfigFileRegistry, ThePropertyBindsItsFileAndNothingElse) {
    CDeviceInfo info = Camera();
    info.SetPropertyValue("DeviceXMLFileOverride", "/my/camera.xml");
    const auto binding = Bind("<Binding><Description File='other.xml'/><Merge File='m.xml'/></Binding>", info);
    EXPECT_FALSE(binding.useDeviceDescription);
    EXPECT_TRUE(binding.hasDescriptionFile);
    EXPECT_EQ(binding.descriptionFile, "/my/camera.xml");
    EXPECT_FALSE(binding.hasMergeFile);
}

TEST_F(ConfigFileRegistry, AnEmptyPropertyBindsNothing) {
    CDeviceInfo info = Camera();
    info.SetPropertyValue("DeviceXMLFileOverride", "");
    EXPECT_EQ(Bind("<Binding><Merge File='" + Absolute("/m.xml") + "'/></Binding>", info).mergeFile,
              Absolute("/m.xml"));
}

TEST_F(ConfigFileRegistry, LooksInTheConfigurationFolderOfTheRoot) {
    const ScopedVariable root("VANTO_ROOT", m_folder.Path());
    const ScopedVariable variable("VANTO_XML_BINDINGS", "");
    const std::string path =
        m_folder.Write("etc/vanto/DescriptionBindings.xml",
                       "<DescriptionBindings><Binding><Merge File='/m.xml'/></Binding></DescriptionBindings>");
    EXPECT_EQ(CConfigFileRegistry::GetInstance().GetRegistryFilePath(), path);
    EXPECT_TRUE(CConfigFileRegistry::GetInstance().GetXmlFileBinding(Camera()).hasMergeFile);
}

TEST_F(ConfigFileRegistry, TheVariableMayNameAFolder) {
    const ScopedVariable variable("VANTO_XML_BINDINGS", m_folder.Path());
    EXPECT_EQ(CConfigFileRegistry::GetInstance().GetRegistryFilePath(), m_folder / "DescriptionBindings.xml");
}

TEST_F(ConfigFileRegistry, AFileThatWasAskedForMustBeThere) {
    const ScopedVariable variable("VANTO_XML_BINDINGS", m_folder / "none.xml");
    EXPECT_THROW(CConfigFileRegistry::GetInstance().GetXmlFileBinding(Camera()), GenICam::RuntimeException);
}

TEST_F(ConfigFileRegistry, BindsADescriptionInPlaceOfTheCamerasOwn) {
    const auto binding = Bind("<Binding ModelName='H2048'><Description File='h.xml'/></Binding>");
    EXPECT_FALSE(binding.useDeviceDescription);
    EXPECT_EQ(binding.descriptionFile, m_folder / "h.xml");
    EXPECT_FALSE(binding.hasMergeFile);
}

TEST_F(ConfigFileRegistry, BindsAMergeFileToTheCamerasOwn) {
    const auto binding = Bind("<Binding><Merge File='" + Absolute("/abs/m.xml") + "'/></Binding>");
    EXPECT_TRUE(binding.useDeviceDescription);
    EXPECT_FALSE(binding.hasDescriptionFile);
    EXPECT_EQ(binding.mergeFile, Absolute("/abs/m.xml"));
}

TEST_F(ConfigFileRegistry, BindsADescriptionForCamerasThatHoldNone) {
    const auto binding =
        Bind("<Binding UseDeviceDescription='true'><Description File='h.xml'/><Merge File='m.xml'/></Binding>");
    EXPECT_TRUE(binding.useDeviceDescription);
    EXPECT_TRUE(binding.hasDescriptionFile);
    EXPECT_TRUE(binding.hasMergeFile);
}

TEST_F(ConfigFileRegistry, ReplacesEnvironmentVariablesInPaths) {
    const ScopedVariable variable("VANTO_TEST_PLACE", Absolute("/place"));
    EXPECT_EQ(Bind("<Binding><Merge File='$(VANTO_TEST_PLACE)/m.xml'/></Binding>").mergeFile, Absolute("/place/m.xml"));
}

TEST_F(ConfigFileRegistry, AnEntryMustFitInEveryAttribute) {
    EXPECT_EQ(Winner("<Binding ModelName='H2048' VendorName='Other'><Description File='a'/></Binding>"), "none");
    EXPECT_EQ(Winner("<Binding ModelName='H*' VendorName='Mar?ow' SerialNumber='12345' DeviceClass='*'>"
                     "<Description File='a'/></Binding>"),
              "a");
    EXPECT_EQ(Winner("<Binding ModelName='h2048'><Description File='a'/></Binding>"), "none");
}

TEST_F(ConfigFileRegistry, APropertyThatIsAbsentFitsOnlyAnything) {
    const CDeviceInfo empty;
    EXPECT_TRUE(Bind("<Binding ModelName='*'><Merge File='a'/></Binding>", empty).hasMergeFile);
    EXPECT_FALSE(Bind("<Binding ModelName='?*'><Merge File='a'/></Binding>", empty).hasMergeFile);
    EXPECT_FALSE(Bind("<Binding ModelName='N/A'><Merge File='a'/></Binding>", empty).hasMergeFile);
}

TEST_F(ConfigFileRegistry, TheMostParticularEntryWins) {
    const std::string any = "<Binding><Description File='any'/></Binding>";
    const std::string vendor = "<Binding VendorName='Marlow'><Description File='vendor'/></Binding>";
    const std::string models = "<Binding ModelName='H*'><Description File='models'/></Binding>";
    const std::string narrow = "<Binding ModelName='H20*'><Description File='narrow'/></Binding>";
    const std::string model = "<Binding ModelName='H2048'><Description File='model'/></Binding>";
    const std::string serial = "<Binding SerialNumber='12345'><Description File='serial'/></Binding>";
    EXPECT_EQ(Winner(any + vendor), "vendor");
    EXPECT_EQ(Winner(models + vendor + any), "models");
    EXPECT_EQ(Winner(narrow + models), "narrow");
    EXPECT_EQ(Winner(model + narrow), "model");
    EXPECT_EQ(Winner(any + serial + model), "serial");
}

TEST_F(ConfigFileRegistry, TwoEntriesThatFitEquallyWellAreAnError) {
    EXPECT_EQ(FailureOfText("<DescriptionBindings>\n"
                            "<Binding ModelName='H204?'><Merge File='a'/></Binding>\n"
                            "<Binding ModelName='H20?8'><Merge File='b'/></Binding>\n"
                            "</DescriptionBindings>\n"),
              "The registry file '" + m_path +
                  "' is ambiguous: the entries in lines 2 and 3 fit a camera equally well. Make one of them more "
                  "particular.");
}

TEST_F(ConfigFileRegistry, EqualEntriesThatAMoreParticularOneBeatsAreFine) {
    const std::string twice = "<Binding ModelName='H2048'><Description File='a'/></Binding>";
    EXPECT_EQ(Winner(twice + twice + "<Binding SerialNumber='1*'><Description File='b'/></Binding>"), "b");
}

TEST_F(ConfigFileRegistry, ReadsTheFileAnewEachTime) {
    EXPECT_EQ(Winner("<Binding><Description File='a'/></Binding>"), "a");
    EXPECT_EQ(Winner("<Binding><Description File='b'/></Binding>"), "b");
}

TEST_F(ConfigFileRegistry, AcceptsAByteOrderMarkCommentsAndADeclaration) {
    EXPECT_EQ(FailureOfText("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>\n<!-- mine -->\n"
                            "<DescriptionBindings/>\n"),
              "no exception");
}

TEST_F(ConfigFileRegistry, NamesLineAndColumnOfBrokenXml) {
    EXPECT_EQ(FailureOfText("<DescriptionBindings>\n  <Binding\n</DescriptionBindings>\n"),
              Malformed("line 3, column 1", "Error parsing start element tag"));
    EXPECT_THAT(FailureOfText(""), HasSubstr("line 1, column 1: No document element found."));
    EXPECT_THAT(FailureOfText("<DescriptionBindings>"), HasSubstr("malformed in line 1, column "));
}

TEST_F(ConfigFileRegistry, CountsColumnsInCharacters) {
    EXPECT_EQ(FailureOfText("<DescriptionBindings><!-- \xC3\xA4\xC3\xB6 --><Bind/></DescriptionBindings>"),
              Malformed("line 1, column 34", "unknown element 'Bind' where 'Binding' is expected"));
}

TEST_F(ConfigFileRegistry, RefusesWhatItDoesNotKnow) {
    const auto failure = [&](const std::string& inside) {
        const std::string text = FailureOfText("<DescriptionBindings>\n" + inside + "</DescriptionBindings>\n");
        return text.substr(text.find("malformed"));
    };
    EXPECT_EQ(failure("<Binding Modell='a'><Merge File='m'/></Binding>"),
              "malformed in line 2, column 2: unknown attribute 'Modell' of 'Binding'.");
    EXPECT_THAT(failure("<Binding ModelName='a' ModelName='b'><Merge File='m'/></Binding>"),
                HasSubstr("attribute 'ModelName' is there twice"));
    EXPECT_THAT(failure("<Binding>\n<Merg File='m'/></Binding>"),
                HasSubstr("line 3, column 2: unknown element 'Merg' where 'Description' or 'Merge' is expected"));
    EXPECT_THAT(failure("<Binding><Merge File='m'/><Merge File='n'/></Binding>"),
                HasSubstr("a second element 'Merge' in one 'Binding'"));
    EXPECT_THAT(failure("<Binding><Merge/></Binding>"), HasSubstr("'Merge' names no file in its attribute 'File'"));
    EXPECT_THAT(failure("<Binding><Merge File='m'>x</Merge></Binding>"), HasSubstr("'Merge' must be empty"));
    EXPECT_THAT(failure("<Binding UseDeviceDescription='no'/>"), HasSubstr("where true or false is expected"));
    EXPECT_THAT(failure("<Binding UseDeviceDescription='false'/>"), HasSubstr("no 'Description' takes its place"));
    EXPECT_THAT(failure("text"), HasSubstr("unknown element '' where 'Binding' is expected"));
}

TEST_F(ConfigFileRegistry, RefusesAnotherRoot) {
    EXPECT_THAT(FailureOfText("<Other/>"), HasSubstr("the root element is 'Other'"));
    EXPECT_THAT(FailureOfText("<DescriptionBindings/><Other/>"), HasSubstr("there is a second root element 'Other'"));
    EXPECT_THAT(FailureOfText("<DescriptionBindings x='1'/>"), HasSubstr("unknown attribute 'x'"));
}

TEST_F(ConfigFileRegistry, RefusesOtherEncodingsAndHugeFiles) {
    EXPECT_THAT(FailureOfText(std::string("\xFF\xFE<\0?\0", 6)), HasSubstr("the file is in UTF-16; save it as UTF-8"));
    const std::string path = m_folder.Write("huge.xml", "");
    std::filesystem::resize_file(path, 16 * 1024 * 1024 + 1);
    const ScopedVariable variable("VANTO_XML_BINDINGS", path);
    EXPECT_THROW(CConfigFileRegistry::GetInstance().GetXmlFileBinding(Camera()), GenICam::RuntimeException);
}

TEST_F(ConfigFileRegistry, ExpandsNoEntities) {
    EXPECT_EQ(FailureOfText("<!DOCTYPE x [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]>\n"
                            "<DescriptionBindings><Binding ModelName='&b;'><Merge File='m'/></Binding>"
                            "</DescriptionBindings>"),
              "no exception");
}

}  // namespace
