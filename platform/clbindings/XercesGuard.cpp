/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the XML library throws, and when it is there
 */

#include "clbindings/XercesGuard.h"

#include <cstddef>
#include <mutex>
#include <new>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include "os/LockName.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

// The XML library counts its users without a lock of its own.
std::mutex g_xercesLock;
[[maybe_unused]] const os::LockName g_xercesLockName(&g_xercesLock, "XML library");

// For messages of a library that could not be initialised, and so can't convert them.
std::string PlainText(const XMLCh* message) {
    std::string text;
    for (; message != nullptr && *message != 0; ++message)
        text += *message < 0x80 ? static_cast<char>(*message) : '?';
    return text;
}

// The library's own ends the process.
class Thrower final : public xercesc::PanicHandler {
    void panic(const PanicReasons reason) override {
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to initialize Xerces: %s",
                                                         getPanicReasonString(reason));
    }
};

constexpr std::size_t kRoom = 4 << 20;  // bytes; several times what an initialisation takes

// The library takes the next initialisation for done after one that has failed, and can't take that back: it crashes.
// So where there is no memory for it, it is not begun; and where it fails all the same, it is not used any more.
void Initialize() {
    static Thrower thrower;
    static bool isBroken = false;
    if (isBroken)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to initialize Xerces: it has failed before");
    ::operator delete(::operator new(kRoom));
    isBroken = true;
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &thrower);
    isBroken = false;
}

}  // namespace

XercesSession::XercesSession(Function couldNotEnd)
    : XercesSession(
          &Initialize, [] { xercesc::XMLPlatformUtils::Terminate(); }, couldNotEnd) {}

/// \throw RuntimeException The library can't be initialised
XercesSession::XercesSession(Function initialize, Function terminate, Function couldNotEnd)
    : m_terminate(terminate), m_couldNotEnd(couldNotEnd) {
    const std::lock_guard lock(g_xercesLock);
    Guarded("Failed to initialize Xerces", initialize, &PlainText);
}

XercesSession::~XercesSession() {
    try {
        const std::lock_guard lock(g_xercesLock);
        m_terminate();
    } catch (...) {
        m_couldNotEnd();
    }
}

/**
 * \brief A document that was parsed, if it is one
 * \throw RuntimeException There is none, or it has no root element
 */
const xercesc::DOMDocument* CheckedDocument(const xercesc::DOMDocument* document) {
    if (document == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get document of CL binding file.");
    if (document->getDocumentElement() == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get root node of CL binding doc.");
    return document;
}

}  // namespace Vanto
