/* SPDX-License-Identifier: Apache-2.0 */
/*
 * gcstring_vector: a list of strings
 */
#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "Base/GCString.h"

namespace GenICam {

/// A growable list of strings. Reentrant.
class gcstring_vector {
public:
    using value_type = gcstring;
    using iterator = std::vector<gcstring>::iterator;
    using const_iterator = std::vector<gcstring>::const_iterator;

    gcstring_vector() = default;
    gcstring_vector(std::initializer_list<gcstring> texts) : m_texts(texts) {}
    explicit gcstring_vector(std::size_t count, const gcstring& text = gcstring()) : m_texts(count, text) {}

    std::size_t size() const noexcept { return m_texts.size(); }
    bool empty() const noexcept { return m_texts.empty(); }
    void clear() noexcept { m_texts.clear(); }
    void reserve(std::size_t count) { m_texts.reserve(count); }
    void resize(std::size_t count, const gcstring& text = gcstring()) { m_texts.resize(count, text); }
    void push_back(const gcstring& text) { m_texts.push_back(text); }
    void pop_back() { m_texts.pop_back(); }
    void swap(gcstring_vector& other) noexcept { m_texts.swap(other.m_texts); }

    gcstring& operator[](std::size_t index) { return m_texts[index]; }
    const gcstring& operator[](std::size_t index) const { return m_texts[index]; }
    gcstring& at(std::size_t index) { return m_texts.at(index); }
    const gcstring& at(std::size_t index) const { return m_texts.at(index); }
    gcstring& front() { return m_texts.front(); }
    const gcstring& front() const { return m_texts.front(); }
    gcstring& back() { return m_texts.back(); }
    const gcstring& back() const { return m_texts.back(); }

    iterator begin() noexcept { return m_texts.begin(); }
    iterator end() noexcept { return m_texts.end(); }
    const_iterator begin() const noexcept { return m_texts.begin(); }
    const_iterator end() const noexcept { return m_texts.end(); }
    iterator erase(iterator position) { return m_texts.erase(position); }
    bool contains(const gcstring& text) const noexcept {
        for (const gcstring& held : m_texts) {
            if (held == text)
                return true;
        }
        return false;
    }

    friend bool operator==(const gcstring_vector& left, const gcstring_vector& right) {
        return left.m_texts == right.m_texts;
    }
    friend bool operator!=(const gcstring_vector& left, const gcstring_vector& right) { return !(left == right); }

private:
    std::vector<gcstring> m_texts;
};

}  // namespace GenICam
