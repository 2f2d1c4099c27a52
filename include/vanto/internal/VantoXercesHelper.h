/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Xerces-C for transport layers: texts in the local code page, and errors as GenICam exceptions
 */
#pragma once

#include <string>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vanto/internal/VantoException.h"

namespace Vanto {

/// A text of the XML library in the local code page: UTF-8 where the system has no other.
inline std::string ToLocalText(const XMLCh* text) {
    if (text == nullptr)
        return {};
#ifdef _WIN32
    char* local = xercesc::XMLString::transcode(text);
    std::string result(local);
    xercesc::XMLString::release(&local);
    return result;
#else
    const xercesc::TranscodeToStr local(text, "UTF-8");
    return std::string(reinterpret_cast<const char*>(local.str()), local.length());
#endif
}

/// The reverse. What is no UTF-8, as a file's name may be, becomes question marks.
inline std::basic_string<XMLCh> FromLocalText(const std::string& text) {
#ifdef _WIN32
    XMLCh* wide = xercesc::XMLString::transcode(text.c_str());
    std::basic_string<XMLCh> result(wide);
    xercesc::XMLString::release(&wide);
    return result;
#else
    try {
        const xercesc::TranscodeFromStr wide(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "UTF-8");
        return std::basic_string<XMLCh>(wide.str(), wide.length());
    } catch (const xercesc::XMLException&) {
        std::basic_string<XMLCh> result;
        for (const char byte : text)
            result += (byte & 0x80) == 0 ? static_cast<XMLCh>(byte) : static_cast<XMLCh>('?');
        return result;
    }
#endif
}

/// Turns errors of a parser into RuntimeException; warnings are ignored.
class DefaultRuntimeExceptionErrorHandler : public xercesc::DefaultHandler {
public:
    void warning(const xercesc::SAXParseException&) override {}
    void error(const xercesc::SAXParseException& error) override { Throw(error); }
    void fatalError(const xercesc::SAXParseException& error) override { Throw(error); }

private:
    [[noreturn]] static void Throw(const xercesc::SAXParseException& error) {
        static constexpr char kSource[] = "include/vanto/internal/VantoXercesHelper";
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse XML file '%s' : '%s', line: %u column: %u", ToLocalText(error.getSystemId()),
            ToLocalText(error.getMessage()), error.getLineNumber(), error.getColumnNumber());
    }
};

}  // namespace Vanto
