/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ErrorTexts: what went wrong last, per connection and per thread
 */

#include "ErrorTexts.h"

#include <algorithm>

namespace marlow {

namespace {

constexpr std::size_t kMostEntries = 512;

}  // namespace

/**
 * \brief Keep the text of a failure of this thread
 * \param[in] cookie Of the connection, 0 for none
 * \param[in] code What the failing function returns
 * \param[in] text The reason
 */
void ErrorTexts::Remember(CLUINT32 cookie, CLINT32 code, const std::string& text) {
    const auto thread = std::this_thread::get_id();
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_entries, [&](const Entry& entry) { return entry.thread == thread && entry.cookie == cookie; });
    m_entries.push_front({thread, cookie, code, text});
    if (m_entries.size() > kMostEntries)
        m_entries.pop_back();
}

/**
 * \brief The text for a code
 * \param[in] cookie Whose failure; 0 for one of no connection
 * \param[in] code Of the failure, or CLP_LAST_ERROR for the last one whatever its code
 *
 * \return Of this thread's own failure, else of the newest of any thread; nothing when there was none like that
 */
std::optional<std::string> ErrorTexts::Find(CLUINT32 cookie, CLINT32 code) const {
    const auto thread = std::this_thread::get_id();
    const auto fits = [&](const Entry& entry) {
        return entry.cookie == cookie && (code == CLProtocol::CLP_LAST_ERROR || code == entry.code);
    };
    const std::lock_guard lock(m_mutex);
    auto found =
        std::ranges::find_if(m_entries, [&](const Entry& entry) { return fits(entry) && entry.thread == thread; });
    if (found == m_entries.end())
        found = std::ranges::find_if(m_entries, fits);
    if (found == m_entries.end())
        return std::nullopt;
    return found->text;
}

void ErrorTexts::Clear() {
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
}

}  // namespace marlow
