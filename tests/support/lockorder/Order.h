/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The order of locks that a run of programs has recorded
 */
#pragma once

#include <istream>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lockorder {

/// Which lock was taken behind which, and where first.
class Order {
public:
    using Pair = std::pair<std::string, std::string>;
    using Circle = std::vector<std::string>;  ///< of each the next is taken behind it, and the first behind the last

    void Read(std::istream& records);
    /// Pairs that are known not to hang, each with its reason: "held -> taken # reason" a line.
    void ReadKnown(std::istream& known);

    const std::set<std::string>& GetNames() const { return m_names; }
    /// One circle for each group of locks that can wait for each other.
    std::vector<Circle> FindCircles() const;
    /// The locks in an order in which they may be taken; only without circles.
    std::vector<std::string> Sorted() const;
    /// Pairs that are listed as known and were not met.
    std::vector<Pair> FindUnusedKnown() const;
    void PrintCircle(const Circle& circle, std::ostream& out) const;

private:
    bool IsTaken(const std::string& held, const std::string& taken) const;
    Circle ShortestFrom(const std::string& start) const;

    std::set<std::string> m_names;
    std::map<Pair, std::string> m_places;
    std::set<Pair> m_known;
};

}  // namespace lockorder
