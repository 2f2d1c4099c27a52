/* SPDX-License-Identifier: Apache-2.0 */
/*
 * NoticeQueue: notifications that carry a number or name and a text
 */
#include "events/EventQueue.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "support/GenTLError.h"

namespace gentl {

namespace {

// An entry is the number, then the text with a final 0.
constexpr std::size_t kHeader = sizeof(std::int64_t);

std::int64_t NumberOf(const void* data) {
    std::int64_t number = 0;
    std::memcpy(&number, data, sizeof number);
    return number;
}

std::string TextOf(const void* data, std::size_t size) {
    const auto* const begin = static_cast<const char*>(data) + kHeader;
    return {begin, std::find(begin, static_cast<const char*>(data) + size, '\0')};
}

// Hexadecimal, an even number of digits, as consumers look for it in descriptions.
std::string EventId(std::int64_t number) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (auto rest = static_cast<std::uint64_t>(number); rest != 0 || text.empty(); rest >>= 8)
        text = std::string{kDigits[(rest >> 4) & 15], kDigits[rest & 15]} + text;
    return text;
}

Info ExplainError(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) {
    if (command == EVENT_DATA_ID)
        return static_cast<std::int32_t>(NumberOf(data));
    return TextOf(data, size);
}

Info ExplainModule(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) {
    if (command == EVENT_DATA_ID)
        return EventId(NumberOf(data));
    if (command == EVENT_DATA_NUMID)
        return static_cast<std::uint64_t>(NumberOf(data));
    const std::string text = TextOf(data, size);
    return std::vector<std::uint8_t>(text.begin(), text.end());
}

}  // namespace

/// Adds a notification; the oldest one goes where there are too many.
void NoticeQueue::Add(std::int64_t number, std::string_view text) {
    text = text.substr(0, kMostText);
    std::vector<std::uint8_t> entry(kHeader + text.size() + 1);
    std::memcpy(entry.data(), &number, sizeof number);
    std::copy(text.begin(), text.end(), entry.begin() + kHeader);
    {
        const std::lock_guard lock(Mutex());
        if (m_entries.size() == kMostEntries)
            m_entries.pop_front();
        m_entries.push_back(std::move(entry));
        ++m_fired;
    }
    Changed().notify_one();
}

void NoticeQueue::TakeFrontLocked(void* target) {
    if (target != nullptr)
        std::memcpy(target, m_entries.front().data(), m_entries.front().size());
    m_entries.pop_front();
}

std::size_t NoticeQueue::MaxSize() const noexcept {
    return kHeader + kMostText + 1;
}

/// ERROR: code and text. FEATURE_INVALIDATE: the feature's name. MODULE: the event's number and what it says.
Info NoticeQueue::Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const {
    if (size <= kHeader)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, "These are no data of this event");
    if (command < EVENT_DATA_ID || command > EVENT_DATA_NUMID)
        ThrowUnknownCommand(command);
    if (m_type == EVENT_MODULE)
        return ExplainModule(command, data, size);
    if (command == EVENT_DATA_NUMID || (m_type == EVENT_FEATURE_INVALIDATE && command == EVENT_DATA_VALUE))
        ThrowNotAvailable(command);
    return m_type == EVENT_ERROR ? ExplainError(command, data, size) : Info(TextOf(data, size));
}

}  // namespace gentl
