/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fills a text with values and leaves out the parts that do not apply
 */
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace MarlowSim {

std::string FillTemplate(std::string_view text, const std::map<std::string, std::string, std::less<>>& values,
                         const std::set<std::string, std::less<>>& conditions);

}  // namespace MarlowSim
