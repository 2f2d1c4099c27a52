/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of texts and errors of the XML library
 */

#include "vanto/internal/VantoXercesHelper.h"

#include <xercesc/util/PlatformUtils.hpp>

#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;

class XercesHelper : public testing::Test {
protected:
    XercesHelper() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XercesHelper() override { xercesc::XMLPlatformUtils::Terminate(); }

    static xercesc::SAXParseException Problem() {
        return xercesc::SAXParseException(FromLocalText("what %s%n").c_str(), FromLocalText("public").c_str(),
                                          FromLocalText("/file %d").c_str(), 4294967296u, 12u);
    }
};

TEST_F(XercesHelper, IgnoresWarnings) {
    DefaultRuntimeExceptionErrorHandler handler;
    EXPECT_NO_THROW(handler.warning(Problem()));
}

TEST_F(XercesHelper, ThrowsErrorsAndFatalErrors) {
    DefaultRuntimeExceptionErrorHandler handler;
    const Thrown expected{"RuntimeException",
                          "Failed to parse XML file '/file %d' : 'what %s%n', line: 4294967296 column: 12",
                          "include/vanto/internal/VantoXercesHelper"};
    EXPECT_EQ(ThrownBy([&] { handler.error(Problem()); }), expected);
    EXPECT_EQ(ThrownBy([&] { handler.fatalError(Problem()); }), expected);
}

TEST_F(XercesHelper, TakesAnErrorWithoutAFile) {
    DefaultRuntimeExceptionErrorHandler handler;
    const xercesc::SAXParseException problem(FromLocalText("what").c_str(), nullptr, nullptr, 1, 2);
    EXPECT_EQ(ThrownBy([&] { handler.error(problem); }).description,
              "Failed to parse XML file '' : 'what', line: 1 column: 2");
}

TEST_F(XercesHelper, TurnsTextsBothWays) {
    for (const std::string text : {"", "text", "J\xc3\xb6rg", "\xf0\x9f\x93\xb7"})
        EXPECT_EQ(ToLocalText(FromLocalText(text).c_str()), text);
}

TEST_F(XercesHelper, TakesANullText) {
    EXPECT_EQ(ToLocalText(nullptr), "");
}

#ifndef _WIN32
TEST_F(XercesHelper, MarksWhatIsNoText) {
    EXPECT_EQ(ToLocalText(FromLocalText("a\xff\xfez").c_str()), "a??z");
}
#endif

}  // namespace
}  // namespace Vanto
