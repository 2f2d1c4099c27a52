/* SPDX-License-Identifier: Apache-2.0 */
/*
 * gcstring: the string that every GenICam interface passes
 */
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "Base/GCTypes.h"

namespace GenICam {

/// A byte string, UTF-8 where it holds text. Reentrant; a null character pointer counts as the empty string.
class gcstring {
public:
    /// No place: what a search that finds nothing returns.
    static constexpr std::size_t npos = std::string::npos;
    /// The same as a function, as GenICam has it.
    static std::size_t _npos() noexcept { return npos; }

    gcstring() noexcept = default;
    /// A copy of a text that ends in a NUL; null gives the empty string.
    gcstring(const char* text) : m_text(text != nullptr ? text : "") {}
    /// A copy of \a length bytes, which may hold NULs.
    gcstring(const char* text, std::size_t length) : m_text(text, length) {}
    /// So many times the character.
    gcstring(std::size_t count, char character) : m_text(count, character) {}
    /// A copy of a text.
    gcstring(const std::string& text) : m_text(text) {}
    /// Takes a text over.
    gcstring(std::string&& text) noexcept : m_text(std::move(text)) {}
    /// A copy of a text.
    explicit gcstring(std::string_view text) : m_text(text) {}

    /// Becomes a copy; null gives the empty string.
    gcstring& operator=(const char* text) { return assign(text); }

    /// The bytes, with a NUL behind them; good until the string changes.
    operator const char*() const noexcept { return m_text.c_str(); }
    /// The bytes, with a NUL behind them; good until the string changes.
    const char* c_str() const noexcept { return m_text.c_str(); }
    /// The string as the standard library has it.
    const std::string& str() const noexcept { return m_text; }
    /// A view; good until the string changes.
    std::string_view view() const noexcept { return m_text; }

    /// Whether it has no bytes.
    bool empty() const noexcept { return m_text.empty(); }
    /// Its length in bytes.
    std::size_t size() const noexcept { return m_text.size(); }
    /// Its length in bytes.
    std::size_t length() const noexcept { return m_text.size(); }
    /// The most bytes that it could have.
    std::size_t max_size() const noexcept { return m_text.max_size(); }
    /// Cuts it to so many bytes, or fills up with NULs.
    void resize(std::size_t count) { m_text.resize(count); }
    /// Gets memory for so many bytes beforehand.
    void reserve(std::size_t count) { m_text.reserve(count); }
    /// Makes it empty.
    void clear() noexcept { m_text.clear(); }
    /// Changes place with another.
    void swap(gcstring& other) noexcept { m_text.swap(other.m_text); }

    /// Becomes a copy.
    gcstring& assign(const gcstring& text) { return *this = text; }
    /// Becomes a copy; null gives the empty string.
    gcstring& assign(const char* text) {
        m_text = text != nullptr ? text : "";
        return *this;
    }
    /// Becomes a copy of so many bytes.
    gcstring& assign(const char* text, std::size_t length) {
        m_text.assign(text, length);
        return *this;
    }
    /// Becomes so many times the character.
    gcstring& assign(std::size_t count, char character) {
        m_text.assign(count, character);
        return *this;
    }
    /// Puts a text behind it.
    gcstring& append(const gcstring& text) {
        m_text += text.m_text;
        return *this;
    }
    /// Puts so many times the character behind it.
    gcstring& append(std::size_t count, char character) {
        m_text.append(count, character);
        return *this;
    }
    /// Puts a text behind it.
    gcstring& operator+=(const gcstring& text) { return append(text); }
    /// Puts a text behind it; null adds nothing.
    gcstring& operator+=(const char* text) {
        m_text += text != nullptr ? text : "";
        return *this;
    }
    /// Puts a character behind it.
    gcstring& operator+=(char character) {
        m_text += character;
        return *this;
    }

    /// Negative, 0 or positive as it comes before the other, is equal, or comes behind: byte by byte, case counts.
    int compare(const gcstring& other) const noexcept { return m_text.compare(other.m_text); }
    /// Where the character stands first, \a from on; npos when nowhere.
    std::size_t find(char character, std::size_t from = 0) const noexcept { return m_text.find(character, from); }
    /// Where the text stands first, \a from on; npos when nowhere.
    std::size_t find(const gcstring& text, std::size_t from = 0) const noexcept {
        return m_text.find(text.m_text, from);
    }
    /// Where the text stands first, \a from on; npos when nowhere.
    std::size_t find(const char* text, std::size_t from = 0) const noexcept { return m_text.find(text, from); }
    /// Where one of the characters stands first, \a from on; npos when nowhere.
    std::size_t find_first_of(const gcstring& set, std::size_t from = 0) const noexcept {
        return m_text.find_first_of(set.m_text, from);
    }
    /// Where a character stands first that is none of these, \a from on; npos when nowhere.
    std::size_t find_first_not_of(const gcstring& set, std::size_t from = 0) const noexcept {
        return m_text.find_first_not_of(set.m_text, from);
    }
    /// A part of it; throws std::out_of_range when \a from is behind its end.
    gcstring substr(std::size_t from = 0, std::size_t count = npos) const { return m_text.substr(from, count); }

    /// Both, one behind the other.
    friend gcstring operator+(const gcstring& left, const gcstring& right) { return left.m_text + right.m_text; }
    /// Both, one behind the other.
    friend gcstring operator+(const gcstring& left, const char* right) { return gcstring(left) += right; }
    /// Both, one behind the other.
    friend gcstring operator+(const char* left, const gcstring& right) { return gcstring(left) += right; }
// Written out for each of them: C++17 has no operator that stands for all.
#define GCSTRING_COMPARISON(op)                                                        \
    friend bool operator op(const gcstring& left, const gcstring& right) noexcept {    \
        return left.m_text.compare(right.m_text) op 0;                                 \
    }                                                                                  \
    friend bool operator op(const gcstring& left, const std::string& right) noexcept { \
        return left.m_text.compare(right) op 0;                                        \
    }                                                                                  \
    friend bool operator op(const std::string& left, const gcstring& right) noexcept { \
        return left.compare(right.m_text) op 0;                                        \
    }                                                                                  \
    friend bool operator op(const gcstring& left, const char* right) noexcept {        \
        return left.m_text.compare(NotNull(right)) op 0;                               \
    }                                                                                  \
    friend bool operator op(const char* left, const gcstring& right) noexcept {        \
        return 0 op right.m_text.compare(NotNull(left));                               \
    }
    GCSTRING_COMPARISON(==)
    GCSTRING_COMPARISON(!=)
    GCSTRING_COMPARISON(<)
    GCSTRING_COMPARISON(<=)
    GCSTRING_COMPARISON(>)
    GCSTRING_COMPARISON(>=)
#undef GCSTRING_COMPARISON
    /// Writes the bytes.
    friend std::ostream& operator<<(std::ostream& out, const gcstring& text) {
        return out << text.m_text;
    }

private:
    static const char* NotNull(const char* text) noexcept {
        return text != nullptr ? text : "";
    }

    std::string m_text;
};

}  // namespace GenICam

/// \cond
// Lets a gcstring be a key of unordered containers.
template <>
struct std::hash<GenICam::gcstring> {
    std::size_t operator()(const GenICam::gcstring& text) const noexcept {
        return std::hash<std::string_view>()(text.view());
    }
};
/// \endcond
