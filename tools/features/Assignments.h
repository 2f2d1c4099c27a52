/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Assignments: several features to set, all or none
 */
#pragma once

#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace tools {

/// NAME=VALUE words of a command line.
struct Assignment {
    std::string name;
    std::string text;
};

Assignment ParseAssignment(const std::string& word);

/// Sets features in the order given. Thread-bound; the node map must outlive it.
class Assignments {
public:
    Assignments(GenApi::INodeMap& nodes, const std::vector<Assignment>& assignments);

    void Check() const;
    void Apply();

private:
    struct Step {
        GenApi::INode* node;
        std::string text;
        bool dependsOnEarlier = false;
    };
    struct Before {
        GenApi::INode* node;
        std::string text;
    };
    std::string PutBack(const std::vector<Before>& before) const;

    std::vector<Step> m_steps;
};

}  // namespace tools
