/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of port configuration files in other encodings and in folders with foreign names
 */

#include <clocale>

#include "PortConfigurationInputFixture.h"
#include "VantoCLSer/configuration/PortConfiguration.h"
#include "tests/VantoCLSer/Fixture.h"
#include "tests/VantoCLSer/configuration/LocalText.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::StartsWith;

constexpr char kTlSource[] = "VantoCLSer/VantoCLSerTL";

const Thrown kTooMuch{"RuntimeException",
                      "Failed to parse CL binding file: its entities and default values expand to more than 1048576 "
                      "characters.",
                      kTlSource};

// Of characters below 256, in two bytes each.
std::string ToUtf16(const std::string& text, bool bigEndian) {
    std::string result = bigEndian ? "\xfe\xff" : "\xff\xfe";
    for (const char character : text) {
        result += bigEndian ? '\0' : character;
        result += bigEndian ? character : '\0';
    }
    return result;
}

constexpr char kUmlautUtf8[] = "J\xc3\xb6rg";
constexpr char kUmlautLatin1[] = "J\xf6rg";

TEST_F(PortConfigurationInput, InUtf8WithAMark) {
    EXPECT_EQ(Read("\xef\xbb\xbf<r>" + PortElement(kUmlautUtf8) + "</r>").at(0).id, LocalText(kUmlautUtf8));
}

TEST_F(PortConfigurationInput, InUtf16) {
    for (const bool bigEndian : {false, true})
        EXPECT_EQ(Read(ToUtf16("<r>" + PortElement(kUmlautLatin1) + "</r>", bigEndian)).at(0).id,
                  LocalText(kUmlautUtf8));
}

TEST_F(PortConfigurationInput, InUtf16WithADeclaration) {
    const std::string text = "<?xml version=\"1.0\" encoding=\"UTF-16\"?><r>" + PortElement("p") + "</r>";
    EXPECT_EQ(Read(ToUtf16(text, false)).at(0).id, "p");
}

TEST_F(PortConfigurationInput, InUtf16CutInTheMiddleOfACharacter) {
    std::string text = ToUtf16("<r>" + PortElement("p") + "</r>", false);
    text.pop_back();
    EXPECT_THAT(Refuse(text).description, StartsWith("Failed to parse"));
}

TEST_F(PortConfigurationInput, InLatin1) {
    const std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r>" + PortElement(kUmlautLatin1) + "</r>";
    EXPECT_EQ(Read(text).at(0).id, LocalText(kUmlautUtf8));
}

TEST_F(PortConfigurationInput, InLatin1WithoutADeclaration) {
    EXPECT_THAT(Refuse("<r>" + PortElement(kUmlautLatin1) + "</r>").description,
                StartsWith("Failed to parse XML file '"));
}

TEST_F(PortConfigurationInput, OutsideOfTheBasicPlane) {
    EXPECT_EQ(Read("<r>" + PortElement("&#x1F4F7;") + "</r>").at(0).id, LocalText("\xf0\x9f\x93\xb7"));
}

TEST_F(PortConfigurationInput, InAFolderWithAForeignName) {
    ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", m_folder / kUmlautUtf8);
    m_folder.Write(std::string(kUmlautUtf8) + "/" + kFileName, "<r>" + PortElement("p") + "</r>");
    PortConfigurationList list;
    ReadCLBindings((m_folder / kUmlautUtf8) + "/" + kFileName, list);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(PortConfigurationInput, InAFolderWhoseNameIsNoText) {
    const std::string name = "\xff\xfe\x80";
    m_folder.Write(name + "/" + kFileName, "<r>" + PortElement("p") + "</r>");
    PortConfigurationList list;
    ReadCLBindings((m_folder / name) + "/" + kFileName, list);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(PortConfigurationInput, InAForeignFolderIsNamedInErrors) {
    m_folder.Write(std::string(kUmlautUtf8) + "/" + kFileName, "<r>");
    const std::string path = (m_folder / kUmlautUtf8) + "/" + kFileName;
    PortConfigurationList list;
    const Thrown thrown = ThrownBy([&] { ReadCLBindings(path, list); });
    EXPECT_THAT(thrown.description, StartsWith("Failed to parse XML file '" + path + "'"));
}

}  // namespace
}  // namespace Vanto
