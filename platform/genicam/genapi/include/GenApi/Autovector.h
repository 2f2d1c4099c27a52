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
    using value_type = T;

    value_autovector() = default;
    explicit value_autovector(std::vector<T> values) : m_values(std::move(values)) {}

    std::size_t size() const noexcept { return m_values.size(); }
    bool empty() const noexcept { return m_values.empty(); }
    const T& operator[](std::size_t index) const { return m_values[index]; }
    const T& at(std::size_t index) const { return m_values.at(index); }
    auto begin() const noexcept { return m_values.begin(); }
    auto end() const noexcept { return m_values.end(); }

private:
    std::vector<T> m_values;
};

using int64_autovector_t = value_autovector<std::int64_t>;
using double_autovector_t = value_autovector<double>;

}  // namespace GenApi
