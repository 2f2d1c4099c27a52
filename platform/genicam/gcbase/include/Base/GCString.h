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
    static constexpr std::size_t npos = std::string::npos;
    static std::size_t _npos() noexcept { return npos; }

    gcstring() noexcept = default;
    gcstring(const char* text) : m_text(text != nullptr ? text : "") {}
    gcstring(const char* text, std::size_t length) : m_text(text, length) {}
    gcstring(std::size_t count, char character) : m_text(count, character) {}
    gcstring(const std::string& text) : m_text(text) {}
    gcstring(std::string&& text) noexcept : m_text(std::move(text)) {}
    explicit gcstring(std::string_view text) : m_text(text) {}

    gcstring& operator=(const char* text) { return assign(text); }

    operator const char*() const noexcept { return m_text.c_str(); }
    const char* c_str() const noexcept { return m_text.c_str(); }
    const std::string& str() const noexcept { return m_text; }
    std::string_view view() const noexcept { return m_text; }

    bool empty() const noexcept { return m_text.empty(); }
    std::size_t size() const noexcept { return m_text.size(); }
    std::size_t length() const noexcept { return m_text.size(); }
    std::size_t max_size() const noexcept { return m_text.max_size(); }
    void resize(std::size_t count) { m_text.resize(count); }
    void reserve(std::size_t count) { m_text.reserve(count); }
    void clear() noexcept { m_text.clear(); }
    void swap(gcstring& other) noexcept { m_text.swap(other.m_text); }

    gcstring& assign(const gcstring& text) { return *this = text; }
    gcstring& assign(const char* text) {
        m_text = text != nullptr ? text : "";
        return *this;
    }
    gcstring& assign(const char* text, std::size_t length) {
        m_text.assign(text, length);
        return *this;
    }
    gcstring& assign(std::size_t count, char character) {
        m_text.assign(count, character);
        return *this;
    }
    gcstring& append(const gcstring& text) {
        m_text += text.m_text;
        return *this;
    }
    gcstring& append(std::size_t count, char character) {
        m_text.append(count, character);
        return *this;
    }
    gcstring& operator+=(const gcstring& text) { return append(text); }
    gcstring& operator+=(const char* text) {
        m_text += text != nullptr ? text : "";
        return *this;
    }
    gcstring& operator+=(char character) {
        m_text += character;
        return *this;
    }

    int compare(const gcstring& other) const noexcept { return m_text.compare(other.m_text); }
    std::size_t find(char character, std::size_t from = 0) const noexcept { return m_text.find(character, from); }
    std::size_t find(const gcstring& text, std::size_t from = 0) const noexcept {
        return m_text.find(text.m_text, from);
    }
    std::size_t find(const char* text, std::size_t from = 0) const noexcept { return m_text.find(text, from); }
    std::size_t find_first_of(const gcstring& set, std::size_t from = 0) const noexcept {
        return m_text.find_first_of(set.m_text, from);
    }
    std::size_t find_first_not_of(const gcstring& set, std::size_t from = 0) const noexcept {
        return m_text.find_first_not_of(set.m_text, from);
    }
    gcstring substr(std::size_t from = 0, std::size_t count = npos) const { return m_text.substr(from, count); }

    friend gcstring operator+(const gcstring& left, const gcstring& right) { return left.m_text + right.m_text; }
    friend gcstring operator+(const gcstring& left, const char* right) { return gcstring(left) += right; }
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

template <>
struct std::hash<GenICam::gcstring> {
    std::size_t operator()(const GenICam::gcstring& text) const noexcept {
        return std::hash<std::string_view>()(text.view());
    }
};
