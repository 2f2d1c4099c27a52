/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Words for what features are, and their values in JSON
 */
#include "features/FeatureText.h"

#include "base/ValueText.h"
#include "values/FeatureValueAccess.h"
#include "values/NumberText.h"

namespace tools {

using GenApi::INode;

/// What kind of feature it is: "Integer", "Enumeration" ...
std::string KindText(const INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return "Integer";
        case GenApi::intfIBoolean:
            return "Boolean";
        case GenApi::intfICommand:
            return "Command";
        case GenApi::intfIFloat:
            return "Float";
        case GenApi::intfIString:
            return "String";
        case GenApi::intfIRegister:
            return "Register";
        case GenApi::intfICategory:
            return "Category";
        case GenApi::intfIEnumeration:
            return "Enumeration";
        case GenApi::intfIEnumEntry:
            return "EnumEntry";
        case GenApi::intfIPort:
            return "Port";
        default:
            return "Node";
    }
}

std::string AccessText(GenApi::EAccessMode mode) {
    switch (mode) {
        case GenApi::NI:
            return "NI";
        case GenApi::WO:
            return "WO";
        case GenApi::RO:
            return "RO";
        case GenApi::RW:
            return "RW";
        default:
            return "NA";
    }
}

/// A feature's value with its type in JSON; texts, entries and registers are strings.
Json ValueJson(INode& node) {
    switch (Vanto::KindOf(node)) {
        case Vanto::FeatureKind::kInteger:
            return Vanto::ReadInteger(node);
        case Vanto::FeatureKind::kFloat: {
            const double value = Vanto::ReadNumber(node);
            return base::NumberFromText(Vanto::NumberText(node, value), "").value_or(value);
        }
        case Vanto::FeatureKind::kBoolean:
            return Vanto::ReadBoolean(node);
        default:
            return Vanto::ReadText(node);
    }
}

}  // namespace tools
