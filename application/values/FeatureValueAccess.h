/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of nodes, read and written as any of the types that features have
 */
#pragma once

#include <cstdint>
#include <string>

#include "vanto/FeatureValue.h"

namespace GenApi {
struct INode;
}

namespace Vanto {

FeatureKind KindOf(const GenApi::INode& node);
/// Whether a value of the kind can be read and set at all.
bool HasValue(FeatureKind kind);
inline bool HasValue(const GenApi::INode& node) {
    return HasValue(KindOf(node));
}
std::string UnitOf(GenApi::INode& node);
FeatureValue ReadValue(GenApi::INode& node);
std::string ReadText(GenApi::INode& node);
std::int64_t ReadInteger(GenApi::INode& node);
double ReadNumber(GenApi::INode& node);
bool ReadBoolean(GenApi::INode& node);
FeatureBytes ReadBytes(GenApi::INode& node);
FeatureValue ParseValue(GenApi::INode& node, const std::string& text);
void WriteValue(GenApi::INode& node, const FeatureValue& value);

}  // namespace Vanto
