/* SPDX-License-Identifier: Apache-2.0 */
/*
 * printf formatting whose arguments are typed: a text never reads memory that was not passed
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "Base/GCString.h"

namespace GenICam {

/// One argument of a formatted text. Texts are borrowed: the argument lives no longer than what it was made from.
class GCBASE_API FormatArgument {
public:
    /// What an argument may be.
    using Value = std::variant<std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, double, char, std::string_view,
                               const void*>;

    /// Numbers of all widths, enumerations, characters, texts and pointers; a null text prints as "(null)".
    template <class T>
    FormatArgument(const T& value) : m_value(MakeValue(value)) {}

    /// The value.
    const Value& Get() const noexcept { return m_value; }
    /// The value as a text, without the widths and flags of a format.
    std::string ToString() const;

private:
    template <class T>
    static Value MakeValue(const T& value) {
        if constexpr (std::is_same_v<T, char>)
            return value;
        else if constexpr (std::is_enum_v<T>)
            return MakeValue(static_cast<std::underlying_type_t<T>>(value));
        else if constexpr (std::is_floating_point_v<T>)
            return static_cast<double>(value);
        else if constexpr (std::is_integral_v<T> && std::is_signed_v<T> && sizeof(T) <= 4)
            return static_cast<std::int32_t>(value);
        else if constexpr (std::is_integral_v<T> && sizeof(T) <= 4)
            return static_cast<std::uint32_t>(value);
        else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
            return static_cast<std::int64_t>(value);
        else if constexpr (std::is_integral_v<T>)
            return static_cast<std::uint64_t>(value);
        else if constexpr (std::is_same_v<T, gcstring>)
            return value.view();
        else if constexpr (std::is_convertible_v<const T&, const char*>) {
            const char* text = value;
            return std::string_view(text != nullptr ? text : "(null)");
        } else if constexpr (std::is_convertible_v<const T&, std::string_view>)
            return static_cast<std::string_view>(value);
        else
            return static_cast<const void*>(value);
    }

    Value m_value;
};

/// The arguments of one formatted text, borrowed.
class FormatArguments {
public:
    FormatArguments() = default;
    /// All of an array, which must stand longer.
    template <std::size_t Count>
    FormatArguments(const FormatArgument (&arguments)[Count]) noexcept : m_first(arguments), m_count(Count) {}

    /// The first argument.
    const FormatArgument* begin() const noexcept { return m_first; }
    /// Behind the last argument.
    const FormatArgument* end() const noexcept { return m_first + m_count; }
    /// How many there are.
    std::size_t size() const noexcept { return m_count; }
    /// The argument of an index below size().
    const FormatArgument& operator[](std::size_t index) const noexcept { return m_first[index]; }

private:
    const FormatArgument* m_first = nullptr;
    std::size_t m_count = 0;
};

/// Formats as printf does, with the length prefixes h, l, ll, z and I64. A conversion that is incomplete, unknown or
/// has no argument left is copied as it stands and takes no argument. Never throws but for lack of memory.
GCBASE_API std::string FormatTyped(const char* format, const FormatArguments& arguments);

template <class... Arguments>
std::string FormatText(const char* format, const Arguments&... arguments) {
    if constexpr (sizeof...(arguments) == 0) {
        return FormatTyped(format, {});
    } else {
        const FormatArgument typed[] = {FormatArgument(arguments)...};
        return FormatTyped(format, typed);
    }
}

}  // namespace GenICam
