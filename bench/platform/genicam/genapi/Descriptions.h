/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions and registers that both engines are measured with
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace genapibench {

/// A description of about \a nodes nodes, of the mixture that cameras have.
std::string Generated(int nodes);
/// A description from the folder of real ones; the generated one of 2000 nodes where there is none.
std::string RealOrGenerated(const std::string& file);
/// Number of elements of a description that are nodes or entries.
int CountNodes(const std::string& xml);
/// A small description with one feature of each kind that is measured.
std::string Features();
/// A selector with \a dependants features whose registers it moves.
std::string Selection(int dependants);
/// Gives back to the system what the heap does not use: what is loaded next takes memory of its own.
void TrimHeap();
/// Bytes that are allocated from the heap now.
std::size_t HeapInUse();

/// 64 KiB of registers; addresses beyond wrap round.
class Registers {
public:
    void Read(std::uint64_t address, void* buffer, std::size_t size) const;
    void Write(std::uint64_t address, const void* buffer, std::size_t size);

private:
    static constexpr std::size_t kSize = 65536;
    std::vector<std::uint8_t> m_bytes = std::vector<std::uint8_t>(kSize + 4096);
};

}  // namespace genapibench
