/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a serial library says about an error code
 */

#include "SerialErrorText.h"

#include <algorithm>
#include <cstring>

#include "ForeignCall.h"
#include "os/PlacedMemory.h"

namespace CLProtocol {

namespace {

// clGetErrorText as it is called here; each argument means two things.
using BothForms = std::int32_t(CLSER_CC*)(char* codeOrMaker, char* textOrCode, char* sizeOrText, std::uint32_t* size);

constexpr std::uint32_t kCapacity = 0x10000;  // its first byte is 0: as a text it is empty
constexpr std::size_t kMargin = 16;           // some libraries write the NUL behind the end

std::string TextIn(const char* bytes) {
    return {bytes, ::strnlen(bytes, kCapacity)};
}

}  // namespace

/**
 * \brief Ask a serial library for the text of an error code, whichever of two forms its function has
 * \param[in] library Path of the library, for messages
 * \param[in] maker Its maker's name
 * \param[in] function Its clGetErrorText
 *
 * By the standard the function takes code, text and size. There are libraries that take the maker's name before them,
 * as a module above several makers' libraries does; nothing tells which, and such a library would use the code as the
 * address of a name. So the one call that is made fits both: the first two arguments are an address whose lower half is
 * the code, with the maker's name there and room for the text; the third is an address with the room's size there and
 * room for the text, too; the fourth, which the standard's form does not look at, is the address of another size.
 * Numbers and addresses are passed in registers alike on all systems that this runs on.
 *
 * \return The function's result and the text; -10009 without room in the process's addresses
 * \throw GenICam::RuntimeException The function threw
 */
ForeignText AskForErrorText(const std::string& library, const std::string& maker, PclGetErrorText function,
                            std::int32_t code) {
    const os::PlacedMemory placed(static_cast<std::uint32_t>(code), kCapacity + kMargin);
    const std::string name = maker.substr(0, kCapacity - 1);
    name.copy(placed.Data(), name.size());
    std::string other(kCapacity + kMargin, '\0');
    std::memcpy(other.data(), &kCapacity, sizeof kCapacity);
    std::uint32_t size = kCapacity;
    const auto both = reinterpret_cast<BothForms>(reinterpret_cast<void (*)()>(function));
    const std::int32_t result =
        CallForeign(library, "clGetErrorText", both, placed.Data(), placed.Data(), other.data(), &size);
    if (result < 0)
        return {result, {}};
    const std::string text = TextIn(placed.Data());
    return {result, text != name ? text : TextIn(other.data())};
}

}  // namespace CLProtocol
