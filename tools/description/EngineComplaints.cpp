/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the node-map engine complains about in a description
 */
#include "Base/GCException.h"
#include "GenApi/NodeMapRef.h"
#include "description/Linter.h"
#include "description/rules/Rules.h"

namespace tools {

namespace {

const char* RuleOfKind(GenApi::EWarningKind kind) {
    switch (kind) {
        case GenApi::wkDuplicateName:
            return "duplicate-name";
        case GenApi::wkBadValue:
            return "bad-value";
        case GenApi::wkUnusableNode:
            return "unusable-node";
        default:
            return "questionable";
    }
}

/// An entry of a structure can't be used when a reference of the structure leads nowhere.
bool IsAboutADanglingReference(const GenApi::Warning& warning) {
    return warning.Kind == GenApi::wkUnusableNode && warning.Message.view().ends_with("which does not exist");
}

/// Circles are told once, not for each of their nodes.
bool IsAboutACircle(const GenApi::Warning& warning) {
    return warning.Message.view().find("part of a circle") != std::string_view::npos;
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
        return {{Severity::kError, {}, failure.GetDescription(), {}, "not-loadable"}};
    }
    map._GetNodeMap()->ParseSwissKnives();
    TryAllNodes(map);
    for (const GenApi::Warning& warning : map._GetWarnings()) {
        // Dangling references and circles are found here with their own place and a suggestion.
        if (warning.Kind == GenApi::wkDanglingReference || IsAboutADanglingReference(warning) ||
            IsAboutACircle(warning))
            continue;
        Place place{warning.Line, warning.Column};
        const DescribedNode* node = model.Find(warning.Node.view());
        // The engine gives the column of an element's name; all others that of its bracket.
        if (place.column > 1)
            --place.column;
        if (node != nullptr && node->place.line == place.line)
            place = node->place;
        const char* const rule = RuleOfKind(warning.Kind);
        findings.push_back({RuleOf(rule).severity, place, warning.Message.str(), {}, rule});
    }
    return findings;
}

}  // namespace tools
