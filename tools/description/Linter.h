/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what is wrong with a camera description
 */
#pragma once

#include <string>
#include <vector>

#include "description/DescriptionModel.h"
#include "findings/Findings.h"

namespace tools {

Findings LintDescription(const std::string& text);
std::vector<Finding> FindDanglingReferences(const DescriptionModel& model);
std::vector<Finding> FindUnreachableNodes(const DescriptionModel& model);
std::vector<Finding> FindCycles(const DescriptionModel& model);
/// What the node-map engine complains about when it loads the description and tries every node.
std::vector<Finding> FindEngineComplaints(const DescriptionModel& model, const std::string& text);

}  // namespace tools
