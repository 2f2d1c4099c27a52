/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the node-map engine complains about in a description
 */
#include "Base/GCException.h"
#include "GenApi/NodeMapRef.h"
#include "description/Linter.h"

namespace tools {

namespace {

Severity SeverityOf(GenApi::EWarningKind kind) {
    switch (kind) {
        case GenApi::wkDanglingReference:
        case GenApi::wkDuplicateName:
        case GenApi::wkBadValue:
        case GenApi::wkUnusableNode:
            return Severity::kError;
        default:
            return Severity::kWarning;
    }
}

/// An entry of a structure can't be used when a reference of the structure leads nowhere.
bool IsAboutADanglingReference(const GenApi::Warning& warning) {
    return warning.Kind == GenApi::wkUnusableNode && warning.Message.view().ends_with("which does not exist");
}

/// Has the engine look at each node, so that it finds out which ones it can't use.
void TryAllNodes(const GenApi::CNodeMapRef& map) {
    GenApi::NodeList_t nodes;
    map._GetNodes(nodes);
    for (const GenApi::INode* node : nodes) {
        try {
            node->GetAccessMode();
        } catch (const GenICam::GenericException&) {
            // The engine has kept a warning, or the node needs a camera to be read.
            continue;
        }
    }
}

}  // namespace

std::vector<Finding> FindEngineComplaints(const DescriptionModel& model, const std::string& text) {
    std::vector<Finding> findings;
    GenApi::CNodeMapRef map;
    try {
        map._LoadXMLFromString(GenICam::gcstring(text));
    } catch (const GenICam::GenericException& failure) {
        return {{Severity::kError, {}, failure.GetDescription(), {}}};
    }
    map._GetNodeMap()->ParseSwissKnives();
    TryAllNodes(map);
    for (const GenApi::Warning& warning : map._GetWarnings()) {
        // Dangling references are found here with their own place and a suggestion.
        if (warning.Kind == GenApi::wkDanglingReference || IsAboutADanglingReference(warning))
            continue;
        Place place{warning.Line, warning.Column};
        const DescribedNode* node = model.Find(warning.Node.view());
        if (place.column == 0 && node != nullptr && node->place.line == place.line)
            place = node->place;
        findings.push_back({SeverityOf(warning.Kind), place, warning.Message.str(), {}});
    }
    return findings;
}

}  // namespace tools
