/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of information commands, and how they get into the caller's buffer
 */
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "gentl/GenTL.h"

namespace gentl {

/// A size_t is a uint64_t on some systems: a type of its own keeps the two apart.
struct SizeValue {
    std::size_t value;
};
struct BoolValue {
    bool value;
};
struct StringList {
    std::vector<std::string> texts;
};

/// The value of one information command, with the type that the interface gives it.
using Info = std::variant<std::string, std::int32_t, std::uint32_t, std::uint64_t, void*, BoolValue, SizeValue,
                          std::vector<std::uint8_t>, StringList>;

/// Where a value goes: a consumer's type, buffer and size.
struct InfoTarget {
    INFO_DATATYPE* type;
    void* buffer;
    std::size_t* size;
};

void CheckTarget(const InfoTarget& target);
void WriteInfo(const Info& info, const InfoTarget& target);
void WriteText(const std::string& text, char* buffer, std::size_t* size);

[[noreturn]] void ThrowUnknownCommand(std::int32_t command);
[[noreturn]] void ThrowNotAvailable(std::int32_t command);

}  // namespace gentl
