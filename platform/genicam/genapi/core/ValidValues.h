/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ValidValues: the only values that a number may have
 */
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace GenApi {

/// The values that a node restricts itself to, in the numbers that it computes with.
struct ValidValues {
    std::span<const std::int64_t> integers;
    std::span<const double> numbers;
    bool isFinal = false;  ///< the node has an increment of its own: what lies behind it does not count

    bool empty() const noexcept { return integers.empty() && numbers.empty(); }
    /// Those within a range, as numbers of type \a T.
    template <class T>
    std::vector<T> Within(T min, T max) const {
        std::vector<T> values;
        const auto add = [&](auto value) {
            if (min <= static_cast<T>(value) && static_cast<T>(value) <= max)
                values.push_back(static_cast<T>(value));
        };
        std::for_each(integers.begin(), integers.end(), add);
        std::for_each(numbers.begin(), numbers.end(), add);
        return values;
    }
};

}  // namespace GenApi
