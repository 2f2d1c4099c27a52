/* SPDX-License-Identifier: Apache-2.0 */
/*
 * JSON as the commands print it
 */
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace tools {

/// Objects keep the order in which their members were added.
using Json = nlohmann::ordered_json;

/// Indented text. Bytes that are no UTF-8 are replaced, so that the result is always valid JSON.
inline std::string ToText(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace tools
