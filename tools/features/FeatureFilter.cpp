/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features that a user asks for
 */
#include "features/FeatureFilter.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/Text.h"
#include "base/Wildcard.h"
#include "error/ExitCode.h"
#include "features/FeatureWalk.h"
#include "output/Text.h"

namespace tools {

namespace {

bool Contains(std::string_view text, std::string_view word) {
    return std::search(text.begin(), text.end(), word.begin(), word.end(), [](char one, char other) {
               return base::LowerCase(one) == base::LowerCase(other);
           }) != text.end();
}

std::vector<std::string> WordsOf(std::string_view pattern) {
    std::vector<std::string> words;
    while (!(pattern = Trimmed(pattern)).empty()) {
        const std::size_t end = std::min(pattern.find(' '), pattern.size());
        words.emplace_back(pattern.substr(0, end));
        pattern.remove_prefix(end);
    }
    return words;
}

/// A pattern with * or ? is one for names; without them each of its words stands somewhere in what is told of a
/// feature, or of a category that it lies in.
class Pattern {
public:
    explicit Pattern(const std::string& text)
        : m_text(text), m_isGlob(text.find_first_of("*?") != std::string::npos), m_words(WordsOf(text)) {}

    bool Fits(const std::vector<const GenApi::INode*>& path) const {
        if (m_isGlob)
            return MatchesGlob(path.back()->GetName().view(), m_text);
        std::string told;
        for (const GenApi::INode* node : path)
            told += node->GetName().str() + "\n" + node->GetDisplayName().str() + "\n";
        told += path.back()->GetToolTip().str() + "\n" + path.back()->GetDescription().str();
        return std::ranges::all_of(m_words, [&](const std::string& word) { return Contains(told, word); });
    }

private:
    std::string m_text;
    bool m_isGlob;
    std::vector<std::string> m_words;
};

bool IsCategory(const TreeNode& one) {
    return one.node->GetPrincipalInterfaceType() == GenApi::intfICategory;
}

}  // namespace

bool MatchesGlob(std::string_view text, std::string_view pattern) {
    return base::MatchesWildcard(base::LowerCase(pattern), base::LowerCase(text));
}

std::vector<TreeNode> SelectFeatures(GenApi::INodeMap& nodes, GenApi::EVisibility visibility,
                                     const std::string& pattern) {
    const Pattern wanted(pattern);
    std::vector<TreeNode> all;
    std::vector<const GenApi::INode*> path;
    std::vector<bool> fits;
    WalkFeatures(nodes, visibility, [&](GenApi::INode& node, std::size_t depth) {
        path.resize(depth);
        all.push_back({&node, depth, depth == 0 ? nullptr : path.back()});
        path.push_back(&node);
        fits.push_back(wanted.Fits(path) && !IsCategory(all.back()));
    });
    // From the end: the first category before what was selected that lies less deep leads to it.
    std::size_t selectedDepth = 0;
    std::vector<TreeNode> selected;
    for (std::size_t index = all.size(); index-- > 0;) {
        const bool isOnTheWay = IsCategory(all[index]) && (pattern.empty() || all[index].depth < selectedDepth);
        if (!fits[index] && !isOnTheWay)
            continue;
        selected.push_back(all[index]);
        selectedDepth = all[index].depth;
    }
    std::ranges::reverse(selected);
    if (selected.empty() && !pattern.empty())
        throw ToolError(fmt::format("no feature fits '{}'", pattern),
                        "Looked at are names, categories and documentation; --visibility invisible looks at all.");
    return selected;
}

}  // namespace tools
