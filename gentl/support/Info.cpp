/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of information commands, and how they get into the caller's buffer
 */
#include "support/Info.h"

#include <cstring>
#include <type_traits>

#include "support/Memory.h"

namespace gentl {

namespace {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

std::vector<std::uint8_t> BytesOf(const void* data, std::size_t size) {
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    return {bytes, bytes + size};
}

struct Encoded {
    INFO_DATATYPE type;
    const void* data;
    std::size_t size;
};

std::vector<std::uint8_t> Join(const StringList& list) {
    std::vector<std::uint8_t> bytes;
    for (const std::string& text : list.texts) {
        const auto one = BytesOf(text.c_str(), text.size() + 1);
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    bytes.push_back(0);
    return bytes;
}

// The bytes of a value, where it stands where possible.
Encoded Encode(const Info& info, std::uint8_t& flag, std::vector<std::uint8_t>& list) {
    return std::visit(Overloaded{[](const std::string& text) {
                                     return Encoded{INFO_DATATYPE_STRING, text.c_str(), text.size() + 1};
                                 },
                                 [](const std::int32_t& value) {
                                     return Encoded{INFO_DATATYPE_INT32, &value, sizeof value};
                                 },
                                 [](const std::uint32_t& value) {
                                     return Encoded{INFO_DATATYPE_UINT32, &value, sizeof value};
                                 },
                                 [](const std::uint64_t& value) {
                                     return Encoded{INFO_DATATYPE_UINT64, &value, sizeof value};
                                 },
                                 [](void* const& value) {
                                     return Encoded{INFO_DATATYPE_PTR, &value, sizeof value};
                                 },
                                 [&flag](const BoolValue& value) {
                                     flag = value.value ? 1 : 0;
                                     return Encoded{INFO_DATATYPE_BOOL8, &flag, sizeof flag};
                                 },
                                 [](const SizeValue& value) {
                                     return Encoded{INFO_DATATYPE_SIZET, &value.value, sizeof value.value};
                                 },
                                 [](const std::vector<std::uint8_t>& bytes) {
                                     return Encoded{INFO_DATATYPE_BUFFER, bytes.data(), bytes.size()};
                                 },
                                 [&list](const StringList& value) {
                                     list = Join(value);
                                     return Encoded{INFO_DATATYPE_STRINGLIST, list.data(), list.size()};
                                 }},
                      info);
}

void WriteBytes(const void* data, std::size_t needed, void* buffer, std::size_t* size) {
    if (buffer != nullptr) {
        if (Load(size) < needed)
            throw GenTLError(GC_ERR_BUFFER_TOO_SMALL, "The buffer has " + std::to_string(Load(size)) + " bytes, " +
                                                          std::to_string(needed) + " are needed");
        std::memcpy(buffer, data, needed);
    }
    Store(size, needed);
}

}  // namespace

/// Throws INVALID_PARAMETER where there is no place for a size. A type is not asked for by everybody.
void CheckTarget(const InfoTarget& target) {
    Required(target.size, "piSize");
    Optional(target.buffer, "pBuffer");
    Optional(target.type, "piType");
}

/**
 * \brief Hand a value to the consumer
 *
 * Without a buffer only type and size are written. With one, \a target.size holds its capacity in bytes and gets what
 * was written; a buffer that is too small gets nothing.
 *
 * \throw GenTLError INVALID_PARAMETER, BUFFER_TOO_SMALL
 */
void WriteInfo(const Info& info, const InfoTarget& target) {
    CheckTarget(target);
    std::uint8_t flag = 0;
    std::vector<std::uint8_t> list;
    const Encoded encoded = Encode(info, flag, list);
    WriteBytes(encoded.data, encoded.size, target.buffer, target.size);
    if (target.type != nullptr)
        Store(target.type, encoded.type);
}

/// The same for functions that give a text alone.
void WriteText(const std::string& text, char* buffer, std::size_t* size) {
    CheckTarget({nullptr, buffer, size});
    WriteBytes(text.c_str(), text.size() + 1, buffer, size);
}

void ThrowUnknownCommand(std::int32_t command) {
    throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "There is no information command " + std::to_string(command) + " here");
}

void ThrowNotAvailable(std::int32_t command) {
    throw GenTLError(GC_ERR_NOT_AVAILABLE,
                     "Information command " + std::to_string(command) + " has no value at present");
}

}  // namespace gentl
