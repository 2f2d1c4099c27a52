/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rate of a camera, as its feature ClSerialPortBaudRate has it
 */
#include "features/BaudRateFeature.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

#include "error/ExitCode.h"

namespace tools {

namespace {

constexpr const char* kFeature = "ClSerialPortBaudRate";

std::string SpeedsOf(const auto& rates) {
    std::vector<std::uint32_t> speeds;
    for (const BaudRate& rate : rates)
        speeds.push_back(rate.bitsPerSecond);
    return fmt::format("{}", fmt::join(speeds, ", "));
}

}  // namespace

const BaudRate& BaudRateFromWord(const std::string& word) {
    const auto rate =
        std::ranges::find(kBaudRates, word, [](const BaudRate& one) { return std::to_string(one.bitsPerSecond); });
    if (rate == kBaudRates.end())
        throw ToolError(fmt::format("'{}' is no baud rate of Camera Link", word),
                        fmt::format("They are {}.", SpeedsOf(kBaudRates)), ExitCode::kUsage);
    return *rate;
}

BaudRateFeature::BaudRateFeature(GenApi::INodeMap& nodes, std::string camera)
    : m_node(nodes.GetNode(kFeature)), m_camera(std::move(camera)) {
    if (!m_node.IsValid())
        throw ToolError(fmt::format("{} has no feature {}, so its baud rate can't be changed", m_camera, kFeature));
}

std::uint32_t BaudRateFeature::Get() const {
    const BaudRate* const rate = base::FindBaudRateByEntryValue(m_node->GetIntValue());
    return rate != nullptr ? rate->bitsPerSecond : 0;
}

void BaudRateFeature::Set(const BaudRate& rate) {
    const std::vector<BaudRate> offered = Offered();
    if (std::ranges::find(offered, rate.flag, &BaudRate::flag) == offered.end())
        throw ToolError(fmt::format("{} does not offer {} baud", m_camera, rate.bitsPerSecond),
                        fmt::format("It offers {}.", SpeedsOf(offered)));
    m_node->SetIntValue(rate.entryValue);
}

std::vector<BaudRate> BaudRateFeature::Offered() const {
    std::vector<BaudRate> offered;
    std::ranges::copy_if(kBaudRates, std::back_inserter(offered),
                         [&](const BaudRate& rate) { return GenApi::IsAvailable(m_node->GetEntry(rate.entryValue)); });
    return offered;
}

std::optional<std::string> BaudRateFeature::EntryName(const BaudRate& rate) const {
    const GenApi::IEnumEntry* const entry = m_node->GetEntry(rate.entryValue);
    return entry != nullptr ? std::optional(entry->GetSymbolic().str()) : std::nullopt;
}

}  // namespace tools
