/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of reading port configuration files, faulty and hostile ones among them
 */
#include "configuration/ConfigurationReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

#include "TemporaryFile.h"
#include "error/ExitCode.h"

namespace {

using namespace tools;
using testing::HasSubstr;
using tools_test::TemporaryFile;

PortConfiguration Read(std::string_view text) {
    return ReadPortConfiguration(TemporaryFile(text).Path());
}

/// The one finding of a text.
Finding OnlyFinding(std::string_view text) {
    const PortConfiguration configuration = Read(text);
    EXPECT_EQ(configuration.findings.size(), 1U);
    return configuration.findings.empty() ? Finding() : configuration.findings.front();
}

TEST(ConfigurationReader, ReadsAllFieldsWithTheirPlaces) {
    const PortConfiguration configuration = Read(R"(<?xml version="1.0" encoding="utf-8"?>
<CLBindings>
  <Port>
    <ID>portname#1</ID>
    <Enabled>true</Enabled>
    <Manufacturer>Marlow</Manufacturer>
    <Family>family</Family>
    <Model>model</Model>
    <DeviceSpecificString>text</DeviceSpecificString>
    <BaudRate>115200</BaudRate>
  </Port>
</CLBindings>)");
    ASSERT_EQ(configuration.entries.size(), 1U);
    const PortEntry& entry = configuration.entries.front();
    EXPECT_EQ(entry.id.text, "portname#1");
    EXPECT_TRUE(entry.IsEnabled());
    EXPECT_EQ(entry.manufacturer.text, "Marlow");
    EXPECT_EQ(entry.family.text, "family");
    EXPECT_EQ(entry.model.text, "model");
    EXPECT_EQ(entry.deviceSpecificString.text, "text");
    EXPECT_EQ(entry.baudRate.text, "115200");
    EXPECT_EQ(entry.place.line, 3U);
    EXPECT_EQ(entry.baudRate.place.line, 10U);
    EXPECT_EQ(entry.baudRate.place.column, 5U);
    EXPECT_TRUE(configuration.wellFormed);
    EXPECT_TRUE(configuration.findings.empty());
}

TEST(ConfigurationReader, FindsPortsAtAnyDepthBelowAnyRoot) {
    EXPECT_EQ(Read("<a><b><Port><ID>x#1</ID></Port></b><Port/></a>").entries.size(), 2U);
}

TEST(ConfigurationReader, TrimsValues) {
    EXPECT_EQ(Read("<a><Port><ID>\n x#1\t</ID></Port></a>").entries[0].id.text, "x#1");
}

TEST(ConfigurationReader, TakesTheTextOfDescendants) {
    const PortConfiguration configuration = Read("<a><Port><ID>x<b>#</b>1</ID></Port></a>");
    EXPECT_EQ(configuration.entries[0].id.text, "x#1");
}

TEST(ConfigurationReader, MatchesTheNameOfIdInAnyCase) {
    EXPECT_EQ(Read("<a><Port><id>x#1</id></Port></a>").entries[0].id.text, "x#1");
    EXPECT_TRUE(Read("<a><Port><iD>x#1</iD></Port></a>").findings.empty());
}

TEST(ConfigurationReader, LetsTheLastOfTwoElementsWinAndSaysSo) {
    const PortConfiguration configuration = Read("<a><Port><ID>x#1</ID>\n<ID>x#2</ID></Port></a>");
    EXPECT_EQ(configuration.entries[0].id.text, "x#2");
    ASSERT_EQ(configuration.findings.size(), 1U);
    EXPECT_EQ(configuration.findings[0].text, "second ID in this Port; it replaces the one of line 1");
    EXPECT_EQ(configuration.findings[0].place.line, 2U);
}

TEST(ConfigurationReader, ReadsUtf16) {
    const std::u16string text = u"\uFEFF<a><Port><ID>ä#1</ID></Port></a>";
    const PortConfiguration configuration =
        Read({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
    ASSERT_EQ(configuration.entries.size(), 1U);
    EXPECT_EQ(configuration.entries[0].id.text, "ä#1");
}

TEST(ConfigurationReader, ReadsLatin1) {
    const PortConfiguration configuration =
        Read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a><Port><ID>\xE4#1</ID></Port></a>");
    ASSERT_EQ(configuration.entries.size(), 1U);
    EXPECT_EQ(configuration.entries[0].id.text, "ä#1");
}

TEST(ConfigurationReader, ReportsLatin1InAFileThatSaysUtf8) {
    const Finding finding =
        OnlyFinding("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a><Port><ID>\xE4#1</ID></Port></a>");
    EXPECT_EQ(finding.text, "malformed XML: invalid byte '#' at position 2 of a 3-byte sequence");
    EXPECT_EQ(finding.place.line, 2U);
    EXPECT_EQ(finding.place.column, 14U);
}

TEST(ConfigurationReader, AdvisesToSaveWhatCanNotBeDecodedAsUtf8) {
    EXPECT_EQ(OnlyFinding("<?xml version=\"1.0\" encoding=\"nonsense\"?><a/>").hint, "Save the file as UTF-8.");
}

TEST(ConfigurationReader, ReportsMalformedXmlWithLineAndColumnAndKeepsWhatStandsAbove) {
    const PortConfiguration configuration = Read("<a>\n<Port><ID>x#1</ID></Port>\n  <Port></Prot>\n</a>");
    EXPECT_FALSE(configuration.wellFormed);
    EXPECT_EQ(configuration.entries.size(), 2U);
    ASSERT_EQ(configuration.findings.size(), 1U);
    EXPECT_EQ(configuration.findings[0].text, "malformed XML: expected end of tag 'Port'");
    EXPECT_EQ(configuration.findings[0].place.line, 3U);
    EXPECT_TRUE(configuration.findings.HasErrors());
}

TEST(ConfigurationReader, ReportsAnAmpersand) {
    EXPECT_THAT(OnlyFinding("<a><Port><ID>x & y</ID></Port></a>").hint, HasSubstr("&amp;"));
}

TEST(ConfigurationReader, ReportsTextBeforeTheDeclaration) {
    EXPECT_THAT(OnlyFinding("\n<?xml version=\"1.0\"?><a/>").hint, HasSubstr("before '<?xml'"));
}

TEST(ConfigurationReader, ReportsAnEmptyFile) {
    EXPECT_EQ(OnlyFinding("").text, "malformed XML: invalid document structure");
}

TEST(ConfigurationReader, ReportsATruncatedFile) {
    EXPECT_FALSE(Read("<a><Port><ID>x#1</ID>").wellFormed);
}

TEST(ConfigurationReader, RefusesAnEntityBomb) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
    for (int level = 1; level < 20; ++level) {
        const std::string before = "&e" + std::to_string(level - 1) + ";";
        text += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int repetition = 0; repetition < 10; ++repetition)
            text += before;
        text += "\">";
    }
    const PortConfiguration configuration = Read(text + "]><a><Port><ID>&e19;</ID></Port></a>");
    EXPECT_FALSE(configuration.wellFormed);
}

TEST(ConfigurationReader, DoesNotReadExternalEntities) {
    const PortConfiguration configuration =
        Read("<!DOCTYPE a [<!ENTITY e SYSTEM \"/etc/passwd\">]><a><Port><ID>x&e;</ID></Port></a>");
    ASSERT_EQ(configuration.entries.size(), 1U);
    EXPECT_EQ(configuration.entries[0].id.text, "x");
}

TEST(ConfigurationReader, RefusesAFileThatTheTransportLayerRefuses) {
    std::string text = "<a><!--";
    text.append(1 << 20, 'x');
    EXPECT_THAT(OnlyFinding(text + "--><Port><ID>x#1</ID></Port></a>").text,
                HasSubstr("longer than the 1048576 bytes that a port configuration may have"));
}

TEST(ConfigurationReader, ReadsAsManyPortsAsFit) {
    std::string text = "<a>";
    for (int port = 0; port < 20'000; ++port)
        text += "<Port/>";
    EXPECT_EQ(Read(text + "</a>").entries.size(), 20'000U);
}

TEST(ConfigurationReader, ReadsElementsAtAnyDepth) {
    std::string text;
    for (int depth = 0; depth < 100'000; ++depth)
        text += "<a>";
    EXPECT_THAT(OnlyFinding(text).text, HasSubstr("input ended before all started tags were ended"));
}

TEST(ConfigurationReader, ReadsAVeryLongValue) {
    const PortConfiguration configuration = Read("<a><Port><ID>" + std::string(1'000'000, 'x') + "</ID></Port></a>");
    EXPECT_EQ(configuration.entries[0].id.text.size(), 1'000'000U);
    EXPECT_TRUE(configuration.findings.empty());
}

TEST(ConfigurationReader, BoundsTheNumberOfFindings) {
    std::string text = "<a><Port>";
    for (int element = 0; element < 110'000; ++element)
        text += "<z/>";
    const PortConfiguration configuration = Read(text + "</Port></a>");
    EXPECT_EQ(configuration.findings.size(), Findings::kMost);
    EXPECT_EQ(configuration.findings.LeftOut(), 10'000U);
}

TEST(ConfigurationReader, ReportsAnAttributeOfPort) {
    EXPECT_EQ(OnlyFinding("<a><Port Enabled='true'><ID>x#1</ID></Port></a>").text,
              "attribute 'Enabled' of Port is ignored");
}

TEST(ConfigurationReader, ReportsTextInsidePort) {
    const Finding finding = OnlyFinding("<a><Port>\n  x<ID>x#1</ID>y</Port></a>");
    EXPECT_EQ(finding.text, "text directly inside Port is ignored");
    EXPECT_EQ(finding.place.line, 2U);
    EXPECT_EQ(finding.place.column, 3U);
}

TEST(ConfigurationReader, ReportsANestedPort) {
    const PortConfiguration configuration = Read("<a><Port><ID>x#1</ID><Port><ID>x#2</ID></Port></Port></a>");
    EXPECT_EQ(configuration.entries.size(), 2U);
    EXPECT_EQ(configuration.entries[0].id.text, "x#1");
    EXPECT_EQ(configuration.entries[1].id.text, "x#2");
    EXPECT_EQ(configuration.findings.size(), 1U);
}

struct NameFault {
    const char* text;
    Severity severity;
    const char* message;
    const char* hint;
};

// How the test runner names a case.
void PrintTo(const NameFault& value, std::ostream* out) {
    *out << value.text;
}

class ConfigurationReaderNames : public testing::TestWithParam<NameFault> {};

TEST_P(ConfigurationReaderNames, AreReported) {
    const Finding finding = OnlyFinding(GetParam().text);
    EXPECT_EQ(finding.severity, GetParam().severity);
    EXPECT_EQ(finding.text, GetParam().message);
    EXPECT_EQ(finding.hint, GetParam().hint);
}

INSTANTIATE_TEST_SUITE_P(
    All, ConfigurationReaderNames,
    testing::Values(NameFault{"<a><Port><model>m</model></Port></a>", Severity::kError,
                              "element 'model' is ignored: its name is Model", "Upper and lower case count."},
                    NameFault{"<a><Port><Enabeld>1</Enabeld></Port></a>", Severity::kError,
                              "unknown element 'Enabeld' in Port is ignored", "did you mean 'Enabled'?"},
                    NameFault{"<a><Port><Comment>1</Comment></Port></a>", Severity::kWarning,
                              "unknown element 'Comment' in Port is ignored", ""},
                    NameFault{"<a><port/></a>", Severity::kError, "element 'port' is ignored: its name is Port",
                              "Upper and lower case count."},
                    NameFault{"<a><Prot/></a>", Severity::kError, "unknown element 'Prot' is ignored",
                              "did you mean 'Port'?"},
                    NameFault{"<a><Manufacturer/></a>", Severity::kError, "Manufacturer outside a Port is ignored", ""},
                    NameFault{"<a><Port><ID>x<Model/></ID></Port></a>", Severity::kWarning,
                              "element 'Model' inside ID: only its text counts", ""}));

TEST(ConfigurationReader, RefusesAFolder) {
    const TemporaryFolder folder;
    try {
        ReadPortConfiguration(folder.Path());
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_EQ(std::string(error.what()), "can't read '" + folder.Path().string() + "': it is a folder");
    }
}

TEST(ConfigurationReader, NamesAFileThatDoesNotExist) {
    const TemporaryFolder folder;
    try {
        ReadPortConfiguration(folder.Path() / "x.xml");
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_THAT(error.what(), HasSubstr("x.xml': No such file or directory"));
    }
}

}  // namespace
