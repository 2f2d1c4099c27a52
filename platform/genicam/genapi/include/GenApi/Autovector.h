/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A list of integers or numbers that a node returns
 */
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace GenApi {

/// A list that owns its values. Reentrant.
template <class T>
class value_autovector {
public:
    /// What it holds.
    using value_type = T;

    value_autovector() = default;
    /// Takes the values over.
    explicit value_autovector(std::vector<T> values) : m_values(std::move(values)) {}

    /// How many there are.
    std::size_t size() const noexcept { return m_values.size(); }
    /// Whether there are none.
    bool empty() const noexcept { return m_values.empty(); }
    /// The one of an index below size().
    const T& operator[](std::size_t index) const { return m_values[index]; }
    /// The one of an index; throws std::out_of_range when there is none.
    const T& at(std::size_t index) const { return m_values.at(index); }
    /// The first.
    auto begin() const noexcept { return m_values.begin(); }
    /// Behind the last.
    auto end() const noexcept { return m_values.end(); }

private:
    std::vector<T> m_values;
};

using int64_autovector_t = value_autovector<std::int64_t>;
using double_autovector_t = value_autovector<double>;

}  // namespace GenApi
