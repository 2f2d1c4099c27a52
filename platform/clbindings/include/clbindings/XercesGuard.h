/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the XML library throws, and when it is there
 */
#pragma once

#include <source_location>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

/// Runs an action of the XML library; its exceptions become a RuntimeException of the caller's line that begins with a
/// text. \a translate makes local text of its messages.
template <class Action, class Translate>
auto Guarded(const char* text, Action action, Translate translate,
             std::source_location where = std::source_location::current()) {
    static constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";
    const auto fail = [&](const XMLCh* message) {
        return VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("%s: %s", text, translate(message));
    };
    try {
        return action();
    } catch (const xercesc::XMLException& error) {
        throw fail(error.getMessage());
    } catch (const xercesc::DOMException& error) {
        throw fail(error.getMessage());
    } catch (const xercesc::SAXException& error) {
        throw fail(error.getMessage());
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        throw VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("%s: Unspecified exception occurred", text);
    }
}

template <class Action>
auto Guarded(const char* text, Action action, std::source_location where = std::source_location::current()) {
    return Guarded(
        text, action, [](const XMLCh* message) { return ToLocalText(message); }, where);
}

/// The XML library, initialised for the lifetime of the object. An action is told when it could not be ended.
class XercesSession {
public:
    using Function = void (*)();

    explicit XercesSession(Function couldNotEnd);
    XercesSession(Function initialize, Function terminate, Function couldNotEnd);
    ~XercesSession();
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;

private:
    const Function m_terminate;
    const Function m_couldNotEnd;
};

const xercesc::DOMDocument* CheckedDocument(const xercesc::DOMDocument* document);

}  // namespace Vanto
