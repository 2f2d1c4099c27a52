/* SPDX-License-Identifier: Apache-2.0 */
/*
 * printf formatting whose arguments are typed
 */

#include "Base/GCFormat.h"

#include <fmt/printf.h>

#include <algorithm>
#include <cstdlib>

namespace GenICam {

namespace {

constexpr int kMaxWidth = 4096;  // wider than any line that a person reads; a text can't ask for gigabytes

// One conversion of a format text: %[flags][width][.precision][length]letter
struct Conversion {
    std::string flags;
    std::string width;      // digits
    std::string precision;  // with its point
    char letter = 0;
    std::size_t length = 0;  // characters of the format text, the % included; 0 when it is no conversion
};

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

class ConversionReader {
public:
    explicit ConversionReader(std::string_view text) : m_text(text) {}

    Conversion Read() {
        Conversion result;
        m_at = 1;
        while (m_at < m_text.size() && std::string_view("-+ #0").find(m_text[m_at]) != std::string_view::npos)
            result.flags += m_text[m_at++];
        result.width = ReadDigits();
        if (Peek() == '.') {
            ++m_at;
            result.precision = "." + ReadDigits();
        }
        SkipLength();
        if (std::string_view("diuoxXcspfFeEgGaA").find(Peek()) == std::string_view::npos)
            return result;
        result.letter = Peek();
        result.length = m_at + 1;
        return result;
    }

private:
    char Peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }

    std::string ReadDigits() {
        const std::size_t from = m_at;
        while (IsDigit(Peek()))
            ++m_at;
        const std::string digits(m_text.substr(from, m_at - from));
        return digits.size() > 4 || std::atoi(digits.c_str()) > kMaxWidth ? std::to_string(kMaxWidth) : digits;
    }

    void SkipLength() {
        for (const std::string_view prefix : {"I64", "I32", "hh", "h", "ll", "l", "z", "j", "t", "L", "w"}) {
            if (m_text.substr(m_at).starts_with(prefix)) {
                m_at += prefix.size();
                return;
            }
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

bool IsOneOf(char letter, std::string_view letters) {
    return letters.find(letter) != std::string_view::npos;
}

template <class T>
std::string Print(const Conversion& how, std::string_view allowedFlags, bool withPrecision, char letter,
                  const T& value) {
    std::string format = "%";
    std::copy_if(how.flags.begin(), how.flags.end(), std::back_inserter(format),
                 [&](char flag) { return IsOneOf(flag, allowedFlags); });
    format += how.width;
    if (withPrecision)
        format += how.precision;
    format += letter;
    return fmt::sprintf(format, value);
}

// Prints one typed value by a conversion; where letter and type do not fit, the type decides.
struct Printer {
    const Conversion& how;

    std::string operator()(std::string_view text) const {
        const std::string_view cut =
            how.letter == 's' && !how.precision.empty()
                ? text.substr(0, static_cast<std::size_t>(std::atoi(how.precision.c_str() + 1)))
                : text;
        return Print(how, "-", false, 's', std::string(cut));
    }
    std::string operator()(char character) const { return (*this)(std::string_view(&character, 1)); }
    std::string operator()(const void* pointer) const {
        return fmt::format("{:#x}", reinterpret_cast<std::uintptr_t>(pointer));
    }
    std::string operator()(double value) const {
        const char letter = IsOneOf(how.letter, "fFeEgGaA") ? how.letter : 'g';
        return Print(how, "-+ #0", true, letter, value);
    }
    template <class Integer>
    std::string operator()(Integer value) const {
        using Unsigned = std::make_unsigned_t<Integer>;
        if (IsOneOf(how.letter, "xXou"))
            return Print(how, "-#0", true, how.letter, static_cast<Unsigned>(value));
        if (how.letter == 'p')
            return fmt::format("{:#x}", static_cast<Unsigned>(value));
        if (how.letter == 'c')
            return (*this)(static_cast<char>(value));
        return Print(how, "-+ 0", true, 'd', value);
    }
};

}  // namespace

std::string FormatArgument::ToString() const {
    static const Conversion plain{.flags = "", .width = "", .precision = "", .letter = 's', .length = 2};
    return std::visit(Printer{plain}, m_value);
}

std::string FormatTyped(const char* format, const FormatArguments& arguments) {
    const std::string_view text = format != nullptr ? format : "";
    std::string result;
    std::size_t next = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t percent = std::min(text.find('%', at), text.size());
        result += text.substr(at, percent - at);
        at = percent;
        if (at == text.size())
            break;
        if (text.substr(at).starts_with("%%")) {
            result += '%';
            at += 2;
            continue;
        }
        const Conversion how = ConversionReader(text.substr(at)).Read();
        if (how.length == 0 || next == arguments.size()) {
            result += '%';
            ++at;
            continue;
        }
        result += std::visit(Printer{how}, arguments[next++].Get());
        at += how.length;
    }
    return result;
}

}  // namespace GenICam
