/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Says in which order a run of programs has taken its locks: lock-order FOLDER [KNOWN]
 *
 * Ends with 1 when threads can wait for each other in a circle, and with 2 when there is nothing to look at.
 */

#include <filesystem>
#include <fstream>
#include <iostream>

#include "Order.h"

namespace {

void ReadFolder(const char* folder, lockorder::Order& order) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".order") {
            std::ifstream records(entry.path());
            order.Read(records);
        }
    }
}

int Report(const lockorder::Order& order) {
    const auto circles = order.FindCircles();
    for (const auto& circle : circles) {
        std::cout << "Threads can wait for each other in a circle:\n";
        order.PrintCircle(circle, std::cout);
    }
    for (const auto& [held, taken] : order.FindUnusedKnown())
        std::cout << "Listed as known, and not met: " << held << " -> " << taken << "\n";
    std::cout << order.GetNames().size() << " locks and waits, " << circles.size() << " circles\n";
    for (const std::string& name : order.Sorted())
        std::cout << "  " << name << "\n";
    return circles.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !std::filesystem::is_directory(argv[1])) {
        std::cerr << "usage: lock-order FOLDER [KNOWN]\n";
        return 2;
    }
    lockorder::Order order;
    ReadFolder(argv[1], order);
    if (argc > 2) {
        std::ifstream known(argv[2]);
        order.ReadKnown(known);
    }
    if (order.GetNames().empty()) {
        std::cerr << "No program has recorded anything in '" << argv[1] << "'.\n";
        return 2;
    }
    return Report(order);
}
