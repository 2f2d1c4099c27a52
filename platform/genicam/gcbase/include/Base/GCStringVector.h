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
    /// What it holds.
    using value_type = gcstring;
    /// Goes through it.
    using iterator = std::vector<gcstring>::iterator;
    /// Goes through one that stays as it is.
    using const_iterator = std::vector<gcstring>::const_iterator;

    gcstring_vector() = default;
    /// Copies of these.
    gcstring_vector(std::initializer_list<gcstring> texts) : m_texts(texts) {}
    /// So many times the text.
    explicit gcstring_vector(std::size_t count, const gcstring& text = gcstring()) : m_texts(count, text) {}

    /// How many there are.
    std::size_t size() const noexcept { return m_texts.size(); }
    /// Whether there are none.
    bool empty() const noexcept { return m_texts.empty(); }
    /// Removes all.
    void clear() noexcept { m_texts.clear(); }
    /// Gets memory for so many beforehand.
    void reserve(std::size_t count) { m_texts.reserve(count); }
    /// Cuts it to so many, or fills up with the text.
    void resize(std::size_t count, const gcstring& text = gcstring()) { m_texts.resize(count, text); }
    /// Puts one at the end.
    void push_back(const gcstring& text) { m_texts.push_back(text); }
    /// Removes the last; there must be one.
    void pop_back() { m_texts.pop_back(); }
    /// Changes place with another.
    void swap(gcstring_vector& other) noexcept { m_texts.swap(other.m_texts); }

    /// The one of an index below size().
    gcstring& operator[](std::size_t index) { return m_texts[index]; }
    /// The one of an index below size().
    const gcstring& operator[](std::size_t index) const { return m_texts[index]; }
    /// The one of an index; throws std::out_of_range when there is none.
    gcstring& at(std::size_t index) { return m_texts.at(index); }
    /// The one of an index; throws std::out_of_range when there is none.
    const gcstring& at(std::size_t index) const { return m_texts.at(index); }
    /// The first; there must be one.
    gcstring& front() { return m_texts.front(); }
    /// The first; there must be one.
    const gcstring& front() const { return m_texts.front(); }
    /// The last; there must be one.
    gcstring& back() { return m_texts.back(); }
    /// The last; there must be one.
    const gcstring& back() const { return m_texts.back(); }

    /// The first.
    iterator begin() noexcept { return m_texts.begin(); }
    /// Behind the last.
    iterator end() noexcept { return m_texts.end(); }
    /// The first.
    const_iterator begin() const noexcept { return m_texts.begin(); }
    /// Behind the last.
    const_iterator end() const noexcept { return m_texts.end(); }
    /// Removes one; returns the one behind it.
    iterator erase(iterator position) { return m_texts.erase(position); }
    /// Whether one of them is this text.
    bool contains(const gcstring& text) const noexcept {
        for (const gcstring& held : m_texts) {
            if (held == text)
                return true;
        }
        return false;
    }

    /// Whether all texts are the same, in their order.
    friend bool operator==(const gcstring_vector& left, const gcstring_vector& right) {
        return left.m_texts == right.m_texts;
    }
    /// Whether they differ.
    friend bool operator!=(const gcstring_vector& left, const gcstring_vector& right) { return !(left == right); }

private:
    std::vector<gcstring> m_texts;
};

}  // namespace GenICam
