/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests that ports, list and config check read a configuration alike, whatever encoding an editor has saved it in
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <ostream>

#include "../PlayedCameras.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using tools_test::PlayedCameras;
using tools_test::RunResult;

constexpr char kPort[] = "COM_Port#k\xC3\xB6ln";
constexpr char kElements[] =
    "<r><Port><ID>COM_Port#k\xF6ln</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer>"
    "</Port></r>";

std::string Declared(const std::string& encoding) {
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n" + kElements;
}

std::string Utf8(const std::string& latin1) {
    std::string text;
    for (const char character : latin1)
        text += character == '\xF6' ? std::string("\xC3\xB6") : std::string(1, character);
    return text;
}

std::string Utf16(const std::string& latin1, bool bigEndian) {
    std::string text = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char character : latin1)
        text += bigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    return text;
}

struct Saved {
    const char* name;
    std::string content;
};

// How the test runner names a case.
void PrintTo(const Saved& saved, std::ostream* out) {
    *out << saved.name;
}

std::string NameOf(const testing::TestParamInfo<Saved>& info) {
    return info.param.name;
}

class SavedConfiguration : public testing::TestWithParam<Saved> {
protected:
    SavedConfiguration() {
        std::ofstream(m_cameras.Folder() / "PortConfiguration_x64.xml", std::ios::binary) << GetParam().content;
    }

    PlayedCameras m_cameras{{"k\xC3\xB6ln,serial=S0"}};
};

using ReadableConfiguration = SavedConfiguration;

TEST_P(ReadableConfiguration, IsReadAlikeByAll) {
    const RunResult ports = m_cameras.Run({"ports"});
    EXPECT_THAT(ports.out, HasSubstr(std::string(kPort)));
    EXPECT_THAT(ports.out, HasSubstr(" yes "));
    const RunResult list = m_cameras.Run({"list"});
    EXPECT_EQ(list.exitCode, 0) << list.err;
    EXPECT_THAT(list.out, HasSubstr("S0"));
    const RunResult check = m_cameras.Run({"config", "check"});
    EXPECT_EQ(check.exitCode, 0) << check.out;
    EXPECT_THAT(check.out, Not(HasSubstr("has no port")));
}

INSTANTIATE_TEST_SUITE_P(All, ReadableConfiguration,
                         testing::Values(Saved{"Utf8", Utf8(kElements)},
                                         Saved{"Utf8WithMark", "\xEF\xBB\xBF" + Utf8(kElements)},
                                         Saved{"Utf8Declared", Utf8(Declared("utf-8"))},
                                         Saved{"Utf16LittleEndian", Utf16(kElements, false)},
                                         Saved{"Utf16BigEndian", Utf16(kElements, true)},
                                         Saved{"Utf16Declared", Utf16(Declared("UTF-16"), false)},
                                         Saved{"Utf8SaidToBeUtf16", Utf8(Declared("UTF-16"))},
                                         Saved{"Latin1Declared", Declared("ISO-8859-1")}),
                         NameOf);

using UnreadableConfiguration = SavedConfiguration;

TEST_P(UnreadableConfiguration, IsRefusedAlikeByAll) {
    const RunResult ports = m_cameras.Run({"ports"});
    EXPECT_THAT(ports.out, HasSubstr("not configured"));
    EXPECT_THAT(ports.err, HasSubstr("is malformed"));
    const RunResult list = m_cameras.Run({"list"});
    EXPECT_THAT(list.out, HasSubstr("The port configuration file can't be used"));
    const RunResult check = m_cameras.Run({"config", "check"});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_THAT(check.out, HasSubstr("malformed XML"));
}

INSTANTIATE_TEST_SUITE_P(All, UnreadableConfiguration,
                         testing::Values(Saved{"Latin1SaidToBeUtf8", Declared("utf-8")},
                                         Saved{"Latin1Undeclared", kElements},
                                         Saved{"UnknownEncoding", Declared("nonsense")}),
                         NameOf);

}  // namespace
