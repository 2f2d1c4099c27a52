/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of finding what is wrong with a well-formed configuration
 */
#include "configuration/ConfigurationChecker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "TemporaryFile.h"
#include "configuration/ConfigurationReader.h"
#include "configuration/ConfigurationWriter.h"

namespace {

using namespace tools;
using testing::HasSubstr;
using tools_test::TemporaryFile;

const std::vector<std::string> kPorts{"COM_Port#ttyUSB0", "COM_Port#ttyUSB1"};

PortConfiguration Check(const std::string& text, const std::optional<std::vector<std::string>>& ports = kPorts) {
    PortConfiguration configuration = ReadPortConfiguration(TemporaryFile(text).Path());
    CheckPortConfiguration(configuration, ports);
    return configuration;
}

std::string Entry(const std::string& content) {
    return "<a><Port>" + content + "</Port></a>";
}

constexpr const char* kGoodStart = "<ID>COM_Port#ttyUSB0</ID><Enabled>true</Enabled>";

TEST(ConfigurationChecker, FindsNothingWrongWithWhatInitWrites) {
    const PortConfiguration configuration = Check(PortConfigurationText(kPorts));
    EXPECT_TRUE(configuration.findings.empty());
    ASSERT_EQ(configuration.entries.size(), 2U);
    EXPECT_EQ(configuration.entries[1].id.text, "COM_Port#ttyUSB1");
    EXPECT_TRUE(configuration.entries[1].IsEnabled());
}

TEST(ConfigurationWriter, EscapesPortIds) {
    const std::vector<std::string> ports{"A&B <1>#x"};
    const PortConfiguration configuration = Check(PortConfigurationText(ports), ports);
    EXPECT_TRUE(configuration.findings.empty());
    EXPECT_EQ(configuration.entries[0].id.text, ports[0]);
}

class ConfigurationCheckerWords : public testing::TestWithParam<std::pair<const char*, bool>> {};

TEST_P(ConfigurationCheckerWords, DecideWhetherAPortIsEnabled) {
    const auto [word, enabled] = GetParam();
    const std::string text = Entry("<ID>COM_Port#ttyUSB0</ID><Manufacturer>Marlow</Manufacturer><Enabled>" +
                                   std::string(word) + "</Enabled>");
    EXPECT_EQ(Check(text).entries[0].IsEnabled(), enabled);
    // Only "no port is enabled" may be complained about: all of these are words for Enabled.
    EXPECT_EQ(Check(text).findings.size(), enabled ? 0U : 1U);
}

INSTANTIATE_TEST_SUITE_P(All, ConfigurationCheckerWords,
                         testing::Values(std::pair("TRUE", true), std::pair("Yes", true), std::pair(" 1 ", true),
                                         std::pair("no", false), std::pair("False", false), std::pair("0", false)));

struct Fault {
    const char* name;
    std::string text;
    Severity severity;
    const char* message;
    const char* hint;
};

// How the test runner names a case.
void PrintTo(const Fault& value, std::ostream* out) {
    *out << value.name;
}

class ConfigurationCheckerFaults : public testing::TestWithParam<Fault> {};

TEST_P(ConfigurationCheckerFaults, AreReported) {
    const Fault& fault = GetParam();
    const PortConfiguration configuration = Check(fault.text);
    const auto finding = std::find_if(configuration.findings.begin(), configuration.findings.end(),
                                      [&](const Finding& one) { return one.text == fault.message; });
    ASSERT_NE(finding, configuration.findings.end());
    EXPECT_EQ(finding->severity, fault.severity);
    EXPECT_THAT(finding->hint, HasSubstr(fault.hint));
}

INSTANTIATE_TEST_SUITE_P(
    All, ConfigurationCheckerFaults,
    testing::Values(
        Fault{"NoId", Entry("<Enabled>1</Enabled>"), Severity::kError, "Port without ID: it is ignored",
              "vanto-cl ports"},
        Fault{"EmptyId", Entry("<ID> </ID>"), Severity::kError, "empty ID: this Port is ignored", "vanto-cl ports"},
        Fault{"PortInOtherCase", Entry("<ID>com_port#ttyUSB0</ID>"), Severity::kError,
              "this machine has no port 'com_port#ttyUSB0'", "did you mean 'COM_Port#ttyUSB0'? Upper"},
        Fault{"PortMistyped", Entry("<ID>COM_Port#ttyUBS1</ID>"), Severity::kWarning,
              "this machine has no port 'COM_Port#ttyUBS1'", "did you mean 'COM_Port#ttyUSB1'?"},
        Fault{"PortUnknown", Entry("<ID>Grabber#A</ID>"), Severity::kWarning, "this machine has no port 'Grabber#A'",
              "'vanto-cl ports' lists the ports."},
        Fault{"NoEnabled", Entry("<ID>COM_Port#ttyUSB0</ID>"), Severity::kWarning,
              "Port without Enabled: the port is not used", "<Enabled>true</Enabled>"},
        Fault{"NoWord", Entry("<ID>COM_Port#ttyUSB0</ID><Enabled>on</Enabled>"), Severity::kError,
              "'on' is no word for Enabled, so the port is not used", "Write true, yes or 1"},
        Fault{"EmptyWord", Entry("<ID>COM_Port#ttyUSB0</ID><Enabled/>"), Severity::kError,
              "'' is no word for Enabled, so the port is not used", "Write true, yes or 1"},
        Fault{"NoManufacturer", Entry(kGoodStart), Severity::kWarning,
              "no Manufacturer: the entry's settings fit no camera", "exactly Marlow"},
        Fault{"OtherManufacturer", Entry(std::string(kGoodStart) + "<Manufacturer>Osprey</Manufacturer>"),
              Severity::kWarning, "Manufacturer 'Osprey': the entry's settings fit no camera that is looked for",
              "exactly Marlow"},
        Fault{"ManufacturerInOtherCase", Entry(std::string(kGoodStart) + "<Manufacturer>marlow</Manufacturer>"),
              Severity::kError, "Manufacturer 'marlow': the entry's settings fit no camera that is looked for",
              "exactly Marlow"},
        Fault{"ModelAlone", Entry(std::string(kGoodStart) + "<Manufacturer>Marlow</Manufacturer><Model>H2048</Model>"),
              Severity::kWarning, "Model without Family has no effect", "compared only where Family fits"},
        Fault{"BaudRate", Entry(std::string(kGoodStart) + "<BaudRate>14400</BaudRate>"), Severity::kWarning,
              "'14400' is none of the baud rates of Camera Link", "9600, 19200"},
        Fault{"BaudRateWord", Entry(std::string(kGoodStart) + "<BaudRate>fast</BaudRate>"), Severity::kWarning,
              "'fast' is none of the baud rates of Camera Link", "921600"},
        Fault{"SameEntryTwice", "<a><Port>" + std::string(kGoodStart) + "</Port>\n<Port>" + kGoodStart + "</Port></a>",
              Severity::kWarning,
              "this entry is never chosen: the one of line 1 fits the same cameras on 'COM_Port#ttyUSB0'", ""},
        Fault{"NothingEnabled", Entry("<ID>COM_Port#ttyUSB0</ID><Enabled>no</Enabled>"), Severity::kError,
              "no port is enabled, so no camera is found", "<Enabled>true</Enabled>"},
        Fault{"NoPort", "<CLBindings/>", Severity::kError, "the file has no Port element, so no port is used",
              "config init"}),
    [](const auto& fault) { return fault.param.name; });

class ConfigurationCheckerRates : public testing::TestWithParam<const char*> {};

TEST_P(ConfigurationCheckerRates, AreKnown) {
    EXPECT_TRUE(Check(Entry(std::string(kGoodStart) + "<Manufacturer>Marlow</Manufacturer><BaudRate>" + GetParam() +
                            "</BaudRate>"))
                    .findings.empty());
}

INSTANTIATE_TEST_SUITE_P(All, ConfigurationCheckerRates,
                         testing::Values("Baud9600", "Baud19200", "Baud38400", "Baud57600", "Baud115200", "Baud230400",
                                         "Baud460800", "Baud921600", ""));

class BaudRateSpelling : public testing::TestWithParam<const char*> {};

TEST_P(BaudRateSpelling, IsThatOfTheCamera) {
    const PortConfiguration configuration = Check(
        Entry(std::string(kGoodStart) + "<Manufacturer>Marlow</Manufacturer><BaudRate>" + GetParam() + "</BaudRate>"));
    ASSERT_EQ(std::distance(configuration.findings.begin(), configuration.findings.end()), 1);
    EXPECT_EQ(configuration.findings.begin()->severity, Severity::kWarning);
    EXPECT_THAT(configuration.findings.begin()->hint, testing::HasSubstr("Write Baud115200:"));
}

INSTANTIATE_TEST_SUITE_P(All, BaudRateSpelling, testing::Values("115200", "baud115200", "Baud_115200", "BAUD115200"));

TEST(ConfigurationChecker, ComparesNoPortsWhenTheyAreNotKnown) {
    EXPECT_TRUE(Check(Entry("<ID>Grabber#A</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer>"), std::nullopt)
                    .findings.empty());
}

TEST(ConfigurationChecker, LeavesAMalformedFileAtThat) {
    const PortConfiguration configuration = Check("<a><Port></Port>");
    EXPECT_EQ(configuration.findings.size(), 1U);
}

TEST(ConfigurationChecker, SortsByPlaceAndPutsTheWholeFileLast) {
    const PortConfiguration configuration = Check("<a><Port>\n<ID>COM_Port#ttyUSB0</ID>\n<Modle/></Port></a>");
    ASSERT_EQ(configuration.findings.size(), 3U);
    EXPECT_EQ(configuration.findings[0].place.line, 1U);
    EXPECT_EQ(configuration.findings[1].place.line, 3U);
    EXPECT_EQ(configuration.findings[2].place.line, 0U);
}

}  // namespace
