/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the XML library throws, and when it is there
 */

#include "VantoCLSer/configuration/XercesGuard.h"

#include <mutex>
#include <xercesc/util/PlatformUtils.hpp>

#include "VantoCLSer/base/Log.h"
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

}  // namespace

XercesSession::XercesSession()
    : XercesSession([] { xercesc::XMLPlatformUtils::Initialize(); }, [] { xercesc::XMLPlatformUtils::Terminate(); }) {}

/// \throw RuntimeException The library can't be initialised
XercesSession::XercesSession(Function initialize, Function terminate) : m_terminate(terminate) {
    const std::lock_guard lock(g_xercesLock);
    Guarded("Failed to initialize Xerces", initialize, &PlainText);
}

XercesSession::~XercesSession() {
    try {
        const std::lock_guard lock(g_xercesLock);
        m_terminate();
    } catch (...) {
        LogTrace(TlLog(), tracelog::kError, "Exception while deinitializing xerces");
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
