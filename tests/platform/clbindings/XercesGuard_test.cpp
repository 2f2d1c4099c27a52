/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what becomes of the XML library's exceptions
 */

#include "clbindings/XercesGuard.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "scripted/Thrown.h"

namespace Vanto {
namespace {

using scripted::Thrown;
using scripted::ThrownBy;
using testing::StartsWith;

constexpr char kTlSource[] = "VantoCLSer/VantoCLSerTL";

class XercesGuard : public testing::Test {
protected:
    template <class Exception>
    static Thrown Passing(const Exception& exception) {
        return ThrownBy([&] { Guarded("Failed to parse CL binding file", [&] { throw exception; }); });
    }

    XercesSession m_session{[] {}};
};

TEST_F(XercesGuard, PassesResultsOn) {
    EXPECT_EQ(Guarded("text", [] { return 3; }), 3);
}

TEST_F(XercesGuard, PutsItsTextBeforeTheLibrarysMessage) {
    const Thrown thrown =
        Passing(xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::CPtr_PointerIsZero));
    EXPECT_EQ(thrown.type, "RuntimeException");
    EXPECT_EQ(thrown.source, kTlSource);
    EXPECT_THAT(thrown.description, StartsWith("Failed to parse CL binding file: "));
    EXPECT_GT(thrown.description.size(), std::string("Failed to parse CL binding file: ").size());
    EXPECT_THAT(Passing(xercesc::DOMException(xercesc::DOMException::SYNTAX_ERR, 0)).description,
                StartsWith("Failed to parse CL binding file: "));
    EXPECT_EQ(Passing(xercesc::SAXException("of the reader")),
              (Thrown{"RuntimeException", "Failed to parse CL binding file: of the reader", kTlSource}));
}

TEST_F(XercesGuard, NamesTheLineOfWhoeverRunsIt) {
    unsigned line = 0;
    try {
        line = __LINE__ + 1;
        Guarded("text", [] { throw 5; });
        FAIL();
    } catch (const GenICam::RuntimeException& error) {
        EXPECT_EQ(error.GetSourceLine(), line);
    }
}

TEST_F(XercesGuard, PassesOtherExceptionsOn) {
    EXPECT_THROW(Guarded("text", [] { throw std::logic_error("other"); }), std::logic_error);
}

TEST_F(XercesGuard, TellsOfWhatIsNoException) {
    EXPECT_EQ(Passing(42), (Thrown{"RuntimeException",
                                   "Failed to parse CL binding file: Unspecified exception occurred", kTlSource}));
}

TEST_F(XercesGuard, NeedsADocumentWithARoot) {
    EXPECT_EQ(ThrownBy([] { CheckedDocument(nullptr); }),
              (Thrown{"RuntimeException", "Failed to get document of CL binding file.", kTlSource}));
    xercesc::DOMDocument* const document = xercesc::DOMImplementation::getImplementation()->createDocument();
    EXPECT_EQ(ThrownBy([&] { CheckedDocument(document); }),
              (Thrown{"RuntimeException", "Failed to get root node of CL binding doc.", kTlSource}));
    document->release();
}

TEST_F(XercesGuard, TellsWhyTheLibraryCanNotBeInitialised) {
    EXPECT_EQ(
        ThrownBy([] { const XercesSession session([] { throw xercesc::SAXException("no room"); }, [] {}, [] {}); }),
        (Thrown{"RuntimeException", "Failed to initialize Xerces: no room", kTlSource}));
}

TEST(XmlLibrary, ThatCanNotBeInitialised) {
    EXPECT_EQ(ThrownBy([] { const XercesSession session([] { throw 42; }, [] {}, [] {}); }),
              (Thrown{"RuntimeException", "Failed to initialize Xerces: Unspecified exception occurred", kTlSource}));
}

TEST(XmlLibrary, ThatCanNotBeEndedIsToldOf) {
    static int told = 0;
    {
        const XercesSession session([] {}, [] { throw 42; }, [] { ++told; });
    }
    EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace Vanto
