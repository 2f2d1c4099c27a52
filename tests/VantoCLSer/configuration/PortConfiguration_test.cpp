/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the port configuration file: where it lies and what it says
 */

#include "VantoCLSer/configuration/PortConfiguration.h"

#include <algorithm>

#include "VantoCLSer/VantoCLSerTL.h"
#include "clbindings/XercesGuard.h"
#include "os/Path.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFileName[] = "PortConfiguration_x64.xml";
constexpr std::size_t kFileNameLength = sizeof(kFileName) - 1;

class PortConfigurationPath : public testing::Test {
protected:
    static std::string Path() {
        char buffer[os::kMaxPath] = "untouched";
        GetPortConfigurationPath(buffer);
        return buffer;
    }
};

TEST_F(PortConfigurationPath, LiesInTheCommonDataFolder) {
    const scripted::ScopedVariable absent("VANTO_CL_BINDINGS");
    const std::string separator(1, os::kPathSeparator);
    EXPECT_EQ(Path(), os::CommonApplicationDataFolder().value() + separator + "Marlow" + separator + "CLBindings" +
                          separator + kFileName);
}

TEST_F(PortConfigurationPath, IsNoneWithoutACommonDataFolder) {
    const scripted::ScopedVariable absent("VANTO_CL_BINDINGS");
    CommonFolder* const unknown = [] { return std::optional<std::string>(); };
    char buffer[os::kMaxPath] = "untouched";
    EXPECT_EQ(GetPortConfigurationPath(buffer, unknown), 0u);
    EXPECT_STREQ(buffer, "untouched");
    const tracelog::LogRecorder log("Vanto.*:error");
    const std::string text = "Couldn't get full path to the PortConfiguration.xml file.";
    EXPECT_EQ(ThrownBy<GenICam::GenericException>([&] { FindPortConfiguration(unknown); }),
              (Thrown{"GenericException", text, "VantoCLSer/VantoCLSerTL"}));
    EXPECT_EQ(log.CountText(text, kError), 1u);
}

TEST_F(PortConfigurationPath, LiesInTheFolderOfTheVariable) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", "/some/folder");
    EXPECT_EQ(Path(), std::string("/some/folder") + os::kPathSeparator + kFileName);
}

TEST_F(PortConfigurationPath, DoesNotDoubleASeparator) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", std::string("/folder") + os::kPathSeparator);
    EXPECT_EQ(Path(), std::string("/folder") + os::kPathSeparator + kFileName);
}

TEST_F(PortConfigurationPath, IsTheBareNameForAnEmptyVariable) {
    const scripted::ScopedVariable empty("VANTO_CL_BINDINGS", "");
    EXPECT_EQ(Path(), kFileName);
    EXPECT_EQ(GetPortConfigurationPath(nullptr), kFileNameLength + 1);
}

TEST_F(PortConfigurationPath, IsTheBareNameForAVariableThatDoesNotFit) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", std::string(os::kMaxPath, 'x'));
    EXPECT_EQ(Path(), kFileName);
}

TEST_F(PortConfigurationPath, CountsItsTerminatingZero) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", "/folder");
    EXPECT_EQ(GetPortConfigurationPath(nullptr), 7 + 1 + kFileNameLength + 1);
}

TEST_F(PortConfigurationPath, DoesNotDoubleASeparatorWhereItDoesNotFit) {
    const std::string folder = std::string(os::kMaxPath - kFileNameLength - 1, 'x') + os::kPathSeparator;
    const scripted::ScopedVariable variable("VANTO_CL_BINDINGS", folder);
    char buffer[os::kMaxPath] = "before";
    EXPECT_EQ(GetPortConfigurationPath(buffer), os::kMaxPath + 1);
    EXPECT_STREQ(buffer, "before");
}

TEST_F(PortConfigurationPath, IsCopiedWhenItJustFits) {
    const std::string folder(os::kMaxPath - 1 - kFileNameLength - 1, 'x');
    const scripted::ScopedVariable variable("VANTO_CL_BINDINGS", folder);
    char buffer[os::kMaxPath] = "";
    EXPECT_EQ(GetPortConfigurationPath(buffer), os::kMaxPath);
    EXPECT_EQ(buffer, folder + os::kPathSeparator + kFileName);
}

TEST_F(PortConfigurationPath, IsNotCopiedWhenItIsTooLong) {
    for (const std::size_t length : {os::kMaxPath, os::kMaxPath + 1}) {
        const std::string folder(length - kFileNameLength - 1, 'x');
        const scripted::ScopedVariable variable("VANTO_CL_BINDINGS", folder);
        char buffer[os::kMaxPath] = "untouched";
        EXPECT_EQ(GetPortConfigurationPath(buffer), length + 1);
        EXPECT_STREQ(buffer, "untouched");
    }
}

class PortConfigurationFile : public PluginTest {
protected:
    // Of a whole document.
    PortConfigurationList ReadText(const std::string& text) {
        m_folder.Write(kFileName, text);
        PortConfigurationList list;
        ReadCLBindings(ConfigurationPath(), list);
        return list;
    }
    PortConfigurationList ReadPorts(const std::string& ports) {
        return ReadText("<CLBindings>" + ports + "</CLBindings>");
    }
    PortConfiguration ReadPort(const std::string& children) {
        const PortConfigurationList list = ReadPorts("<Port><ID>p</ID>" + children + "</Port>");
        EXPECT_EQ(list.size(), 1u);
        return list.at(0);
    }
    static std::vector<std::string> Ids(const PortConfigurationList& list) {
        std::vector<std::string> ids;
        std::transform(list.begin(), list.end(), std::back_inserter(ids),
                       [](const auto& entry) { return entry.id.str(); });
        return ids;
    }
};

TEST_F(PortConfigurationFile, IsReadAsDescribed) {
    const PortConfigurationList list = ReadText(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<CLBindings>\n"
        "  <Port>\n"
        "    <ID>portname#1</ID>\n"
        "    <Enabled>true</Enabled>\n"
        "    <Manufacturer>Marlow</Manufacturer>\n"
        "    <Family>family</Family>\n"
        "    <Model>model</Model>\n"
        "    <DeviceSpecificString>text</DeviceSpecificString>\n"
        "    <BaudRate>115200</BaudRate>\n"
        "  </Port>\n"
        "</CLBindings>\n");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].id, "portname#1");
    EXPECT_TRUE(list[0].enabled);
    EXPECT_EQ(list[0].manufacturer, "Marlow");
    EXPECT_EQ(list[0].family, "family");
    EXPECT_EQ(list[0].model, "model");
    EXPECT_EQ(list[0].deviceSpecificString, "text");
    EXPECT_EQ(list[0].baudRate, "115200");
}

TEST_F(PortConfigurationFile, LeavesAbsentFieldsEmptyAndThePortDisabled) {
    const PortConfiguration entry = ReadPort("");
    EXPECT_FALSE(entry.enabled);
    for (const gcstring& field :
         {entry.manufacturer, entry.family, entry.model, entry.deviceSpecificString, entry.baudRate})
        EXPECT_EQ(field, "");
}

TEST_F(PortConfigurationFile, KeepsTheOrderOfTheDocumentAndDuplicates) {
    EXPECT_THAT(Ids(ReadPorts(PortElement("b") + PortElement("a") + PortElement("b") + PortElement("B"))),
                ElementsAre("b", "a", "b", "B"));
}

TEST_F(PortConfigurationFile, FindsPortsAnywhere) {
    EXPECT_THAT(Ids(ReadText("<Port><ID>root</ID><x><Port><ID>deep</ID></Port></x><Port><ID>inner</ID></Port></Port>")),
                ElementsAre("root", "deep", "inner"));
}

TEST_F(PortConfigurationFile, AcceptsAnyRootAndNoPorts) {
    EXPECT_THAT(ReadText("<anything/>"), IsEmpty());
}

TEST_F(PortConfigurationFile, MatchesThePortElementCaseSensitively) {
    EXPECT_THAT(ReadPorts("<port><ID>a</ID></port><PORT><ID>b</ID></PORT>"), IsEmpty());
}

TEST_F(PortConfigurationFile, IgnoresAttributes) {
    const PortConfigurationList list =
        ReadPorts("<Port ID=\"x\" Enabled=\"true\" Model=\"m\"><ID Enabled=\"true\">p</ID></Port>");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].id, "p");
    EXPECT_FALSE(list[0].enabled);
    EXPECT_EQ(list[0].model, "");
}

TEST_F(PortConfigurationFile, IgnoresWhatIsNoKnownElement) {
    const PortConfiguration entry =
        ReadPort("text<!-- <Model>c</Model> --><?pi Model?><Other>o</Other><![CDATA[Model]]>");
    EXPECT_EQ(entry.id, "p");
    EXPECT_EQ(entry.model, "");
}

TEST_F(PortConfigurationFile, ReadsOnlyTheChildrenOfAPort) {
    EXPECT_EQ(ReadPort("<Group><Model>m</Model></Group>").model, "");
}

TEST_F(PortConfigurationFile, JoinsTheTextOfAllDescendants) {
    EXPECT_EQ(ReadPort("<Model>a<b>b<c>c</c></b><![CDATA[<d>]]><!-- no -->e<?pi no?></Model>").model, "abc<d>e");
}

TEST_F(PortConfigurationFile, ReadsEntitiesOfTheDocument) {
    const PortConfigurationList list = ReadText(
        "<!DOCTYPE r [<!ENTITY id '<ID>from#entity</ID>'><!ENTITY m 'mod'>]>"
        "<r><Port>&id;<Model>&m;el &amp; &#x41;</Model></Port></r>");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].id, "from#entity");
    EXPECT_EQ(list[0].model, "model & A");
}

TEST_F(PortConfigurationFile, TrimsWhiteSpaceAtBothEnds) {
    EXPECT_EQ(ReadPort("<Model>\t\r\n  two words \n\t</Model>").model, "two words");
    EXPECT_EQ(ReadPort("<Model> \n </Model>").model, "");
}

TEST_F(PortConfigurationFile, MatchesIdWithoutRegardToCase) {
    EXPECT_THAT(Ids(ReadPorts("<Port><id> a#1 </id></Port><Port><Id>b</Id></Port><Port><iD>c</iD></Port>")),
                ElementsAre("a#1", "b", "c"));
}

TEST_F(PortConfigurationFile, MatchesTheOtherNamesCaseSensitively) {
    const PortConfiguration entry = ReadPort(
        "<model>x</model><FAMILY>x</FAMILY><manufacturer>x</manufacturer><enabled>true</enabled><Baudrate>1</Baudrate>"
        "<deviceSpecificString>x</deviceSpecificString>");
    EXPECT_FALSE(entry.enabled);
    for (const gcstring& field :
         {entry.manufacturer, entry.family, entry.model, entry.deviceSpecificString, entry.baudRate})
        EXPECT_EQ(field, "");
}

TEST_F(PortConfigurationFile, EnablesForYesTrueAndOne) {
    for (const char* value : {"yes", "YES", "Yes", "true", "TRUE", "tRuE", "1", " true\n", "<b>ye</b>s"})
        EXPECT_TRUE(ReadPort(std::string("<Enabled>") + value + "</Enabled>").enabled) << value;
}

TEST_F(PortConfigurationFile, DisablesForAnythingElse) {
    for (const char* value : {"no", "false", "0", "", " ", "on", "y", "truee", "11", "1 1", "enabled"})
        EXPECT_FALSE(ReadPort(std::string("<Enabled>") + value + "</Enabled>").enabled) << value;
}

TEST_F(PortConfigurationFile, TakesTheLastOccurrenceOfEveryField) {
    const PortConfigurationList list = ReadPorts(
        "<Port><ID>a</ID><Model>1</Model><Enabled>yes</Enabled><id>b</id><Model>2</Model><Enabled>no</Enabled></Port>");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].id, "b");
    EXPECT_EQ(list[0].model, "2");
    EXPECT_FALSE(list[0].enabled);
}

TEST_F(PortConfigurationFile, EmptiesAFieldThatOccursAgainWithoutText) {
    EXPECT_EQ(ReadPort("<Model>m</Model><Model/>").model, "");
}

TEST_F(PortConfigurationFile, SkipsPortsWithoutAnId) {
    PortConfigurationList list;
    WriteConfiguration("<Port/><Port><ID/></Port><Port><ID> \n</ID></Port><Port><Model>m</Model></Port>" +
                       PortElement("a") + "<Port><ID>b</ID><ID/></Port>");
    ReadCLBindings(ConfigurationPath(), list);
    EXPECT_THAT(Ids(list), ElementsAre("a"));
    EXPECT_EQ(CountLogged(kTl, {kDebug, "Successfully parsed %u entries from CLbindings file.", {"1"}}), 1u);
}

TEST_F(PortConfigurationFile, KeepsTheBaudRateAsText) {
    EXPECT_EQ(ReadPort("<BaudRate>fast</BaudRate>").baudRate, "fast");
}

TEST_F(PortConfigurationFile, LogsItsPathAndTheNumberOfEntries) {
    ReadPorts(PortElement("a") + PortElement("b"));
    EXPECT_THAT(LoggedIn(kTl),
                ElementsAre(Logged{kDebug, "Trying to load CLBindings from file '%s'", {ConfigurationPath()}},
                            Logged{kDebug, "Successfully parsed %u entries from CLbindings file.", {"2"}}));
}

TEST_F(PortConfigurationFile, AppendsToTheList) {
    m_folder.Write(kFileName, "<r>" + PortElement("new") + "</r>");
    PortConfigurationList list(1);
    const std::string path = ConfigurationPath();
    ReadCLBindings(path, list);
    EXPECT_THAT(Ids(list), ElementsAre("", "new"));
}

TEST_F(PortConfigurationFile, CountsTheEntriesThatItAppends) {
    m_folder.Write(kFileName, "<r><Port/>" + PortElement("a") + PortElement("b") + PortElement("a") + "</r>");
    const XercesSession xerces([] {});
    PortConfigurationList list(1);
    EXPECT_EQ(ParseCLBindings(ConfigurationPath().c_str(), list), 3u);
    EXPECT_THAT(Ids(list), ElementsAre("", "a", "b", "a"));
}

TEST_F(PortConfigurationFile, IsNotReadFromANullPath) {
    PortConfigurationList list;
    EXPECT_EQ(ParseCLBindings(nullptr, list), 0u);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortConfigurationFile, TellsOfAnXmlLibraryThatCanNotBeEnded) {
    {
        const XercesSession session([] {}, [] { throw 42; }, &LogUnendedXercesSession);
    }
    EXPECT_THAT(LoggedIn(kTl), ElementsAre(Logged{kError, "Exception while deinitializing xerces", {}}));
}

TEST_F(PortConfigurationFile, ThatIsMissingIsLoggedAndYieldsNothing) {
    PortConfigurationList list;
    EXPECT_EQ(ParseCLBindings(ConfigurationPath().c_str(), list), 0u);
    EXPECT_THAT(
        LoggedIn(kTl),
        ElementsAre(
            Logged{kDebug, "Trying to load CLBindings from file '%s'", {ConfigurationPath()}},
            Logged{kError, "CLBindings file '%s' does not exist or could not be read.", {ConfigurationPath()}}));
}

TEST_F(PortConfigurationFile, PathIsNoFormat) {
    const std::string path = m_folder / "%s%n%d";
    PortConfigurationList list;
    ParseCLBindings(path.c_str(), list);
    EXPECT_EQ(m_log.CountText("Trying to load CLBindings from file '" + path + "'", kDebug), 1u);
}

}  // namespace
}  // namespace Vanto
