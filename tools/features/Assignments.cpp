/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Assignments: several features to set, all or none
 */
#include "features/Assignments.h"

#include <fmt/format.h>

#include <set>

#include "error/ExitCode.h"
#include "features/FeatureInput.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "output/Text.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

/// Adds the nodes that a write to a node may change: those that depend on it or on its registers, and those it selects.
void AddInfluenced(GenApi::INode& node, std::set<const GenApi::INode*>& influenced) {
    GenApi::NodeList_t written;
    node.GetChildren(written, GenApi::ctTerminalNodes);
    written.push_back(&node);
    for (const GenApi::INode* one : written) {
        GenApi::NodeList_t depending;
        one->GetChildren(depending, GenApi::ctDependingNodes);
        influenced.insert(depending.begin(), depending.end());
    }
    GenApi::FeatureList_t selected;
    if (const GenApi::CSelectorPtr selector(&node); selector.IsValid())
        selector->GetSelectedFeatures(selected);
    for (GenApi::IValue* value : selected)
        influenced.insert(value->GetNode());
}

}  // namespace

/// Splits NAME=VALUE at its first equals sign; throws ToolError (kUsage).
Assignment ParseAssignment(const std::string& word) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || Trimmed(word.substr(0, sign)).empty())
        throw ToolError(fmt::format("'{}' is no NAME=VALUE", word), "Example: ExposureTime=2500", ExitCode::kUsage);
    return {std::string(Trimmed(word.substr(0, sign))), word.substr(sign + 1)};
}

/// Looks all names up; throws ToolError for an unknown one.
Assignments::Assignments(GenApi::INodeMap& nodes, const std::vector<Assignment>& assignments) {
    std::set<const GenApi::INode*> influenced;
    for (const Assignment& assignment : assignments) {
        GenApi::INode& node = FindFeature(nodes, assignment.name);
        m_steps.push_back({&node, assignment.text, influenced.contains(&node)});
        AddInfluenced(node, influenced);
    }
}

/**
 * \brief Check all values without writing anything
 *
 * What an earlier assignment may change is checked for its notation only: its limits are known when its turn comes.
 *
 * \throw ToolError A value can't be set
 */
void Assignments::Check() const {
    for (const Step& step : m_steps) {
        if (!step.dependsOnEarlier)
            CheckWritable(*step.node);
        const Vanto::FeatureValue value = ParsedValue(*step.node, step.text);
        if (!step.dependsOnEarlier)
            CheckRange(*step.node, value);
    }
}

/**
 * \brief Set the features
 * \throw ToolError One was refused; those before it have their values from before again, or the text says which don't
 */
void Assignments::Apply() {
    std::vector<Before> before;
    for (const Step& step : m_steps) {
        try {
            ThrowIfInterrupted();
            CheckWritable(*step.node);
            const Vanto::FeatureValue value = ParsedValue(*step.node, step.text);
            CheckRange(*step.node, value);
            if (GenApi::IsReadable(step.node->GetAccessMode()))
                before.push_back({step.node, Vanto::ReadText(*step.node)});
            Vanto::WriteValue(*step.node, value);
        } catch (const ToolError& error) {
            throw ToolError(error.what(), error.Hint() + (error.Hint().empty() ? "" : "\n") + PutBack(before),
                            error.Code());
        } catch (const GenICam::GenericException& error) {
            throw ToolError(error.GetDescription(), PutBack(before));
        }
    }
}

/// Sets the values from before, the last first; tells what became of it.
std::string Assignments::PutBack(const std::vector<Before>& before) const {
    std::string failed;
    for (auto one = before.rbegin(); one != before.rend(); ++one) {
        try {
            if (Vanto::ReadText(*one->node) != one->text)
                Vanto::WriteValue(*one->node, one->text);
        } catch (const std::exception&) {
            failed += (failed.empty() ? "" : ", ") + one->node->GetName().str();
        }
    }
    return failed.empty() ? "Nothing was changed." : "These could not be put back: " + failed;
}

}  // namespace tools
