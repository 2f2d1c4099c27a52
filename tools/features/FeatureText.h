/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of features as text
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"
#include "output/Json.h"

namespace tools {

/// The interface of a node, which its principal interface type promises.
template <class Interface>
Interface& As(GenApi::INode& node) {
    return *GenApi::CPointer<Interface>(&node);
}

std::string KindText(const GenApi::INode& node);
std::string AccessText(GenApi::EAccessMode mode);
std::string RangeText(GenApi::INode& node);
bool IsAddress(GenApi::IInteger& integer);
std::string IntegerText(GenApi::IInteger& integer, std::int64_t value);
std::vector<std::string> EntryNames(GenApi::INode& node);
std::string NumberText(GenApi::INode& node, double value);
std::string ValueText(GenApi::INode& node);
Json ValueJson(GenApi::INode& node);

/// Whether a value of the kind can be read and set at all; commands and categories have none.
bool HasValue(const GenApi::INode& node);

}  // namespace tools
