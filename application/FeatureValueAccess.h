/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of nodes, read and written as any of the types that features have
 */
#pragma once

#include "vanto/Feature.h"

namespace Vanto {

FeatureKind KindOf(const GenApi::INode& node);
std::string UnitOf(GenApi::INode& node);
FeatureValue ReadValue(GenApi::INode& node);
std::string ReadText(GenApi::INode& node);
std::int64_t ReadInteger(GenApi::INode& node);
double ReadNumber(GenApi::INode& node);
bool ReadBoolean(GenApi::INode& node);
FeatureBytes ReadBytes(GenApi::INode& node);
void WriteValue(GenApi::INode& node, const FeatureValue& value);

}  // namespace Vanto
