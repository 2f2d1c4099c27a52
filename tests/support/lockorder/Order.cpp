/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The order of locks that a run of programs has recorded
 */

#include "Order.h"

#include <algorithm>
#include <deque>

namespace lockorder {

namespace {

constexpr char kArrow[] = " -> ";

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

/**
 * \brief Add what one process has recorded
 * \param[in] records Lines "held TAB taken TAB program", each followed by lines of calls that begin with TAB
 */
void Order::Read(std::istream& records) {
    std::string* place = nullptr;
    for (std::string line; std::getline(records, line);) {
        if (line.starts_with('\t')) {
            if (place != nullptr)
                *place += "    " + line.substr(1) + "\n";
            continue;
        }
        const std::size_t first = line.find('\t');
        const std::size_t second = line.find('\t', first + 1);
        if (first == std::string::npos || second == std::string::npos)
            continue;
        const Pair pair(line.substr(0, first), line.substr(first + 1, second - first - 1));
        m_names.insert({pair.first, pair.second});
        const auto [found, isNew] = m_places.try_emplace(pair);
        place = isNew ? &found->second : nullptr;
        if (isNew)
            found->second = "  in " + line.substr(second + 1) + "\n";
    }
}

void Order::ReadKnown(std::istream& known) {
    for (std::string line; std::getline(known, line);) {
        line = line.substr(0, line.find('#'));
        if (const std::size_t arrow = line.find(kArrow); arrow != std::string::npos)
            m_known.insert({Trimmed(line.substr(0, arrow)), Trimmed(line.substr(arrow + sizeof kArrow - 1))});
    }
}

bool Order::IsTaken(const std::string& held, const std::string& taken) const {
    return m_places.contains({held, taken}) && !m_known.contains({held, taken});
}

// From a lock back to itself; empty where no way leads there.
Order::Circle Order::ShortestFrom(const std::string& start) const {
    std::map<std::string, std::string> cameFrom;
    std::deque<std::string> next{start};
    while (!next.empty()) {
        const std::string at = next.front();
        next.pop_front();
        if (IsTaken(at, start)) {
            Circle circle{at};
            while (circle.front() != start)
                circle.insert(circle.begin(), cameFrom.at(circle.front()));
            return circle;
        }
        for (const std::string& name : m_names) {
            if (IsTaken(at, name) && cameFrom.try_emplace(name, at).second)
                next.push_back(name);
        }
    }
    return {};
}

std::vector<Order::Circle> Order::FindCircles() const {
    std::vector<Circle> circles;
    std::set<std::string> seen;
    for (const std::string& name : m_names) {
        const Circle circle = seen.contains(name) ? Circle() : ShortestFrom(name);
        seen.insert(circle.begin(), circle.end());
        if (!circle.empty())
            circles.push_back(circle);
    }
    return circles;
}

std::vector<std::string> Order::Sorted() const {
    std::vector<std::string> sorted;
    std::set<std::string> left = m_names;
    const auto isFirst = [&](const std::string& name) {
        return std::none_of(left.begin(), left.end(), [&](const std::string& other) { return IsTaken(other, name); });
    };
    for (auto first = left.begin(); first != left.end();) {
        first = std::find_if(left.begin(), left.end(), isFirst);
        if (first == left.end())
            break;
        sorted.push_back(*first);
        left.erase(first);
        first = left.begin();
    }
    return sorted;
}

std::vector<Order::Pair> Order::FindUnusedKnown() const {
    std::vector<Pair> unused;
    std::copy_if(m_known.begin(), m_known.end(), std::back_inserter(unused),
                 [this](const Pair& pair) { return !m_places.contains(pair); });
    return unused;
}

void Order::PrintCircle(const Circle& circle, std::ostream& out) const {
    for (std::size_t index = 0; index < circle.size(); ++index) {
        const Pair pair(circle[index], circle[(index + 1) % circle.size()]);
        out << "'" << pair.second << "' is taken behind '" << pair.first << "'\n" << m_places.at(pair);
    }
}

}  // namespace lockorder
