/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameTags: how many frames are missing, by the numbers that a frame grabber gave to those that came
 */
#include "base/FrameTags.h"

#include <algorithm>
#include <utility>

namespace base {

std::uint64_t FrameTags::Add(std::uint32_t tag) noexcept {
    constexpr std::uint32_t kForward = 0x80000000;
    const std::uint32_t step = m_last ? tag - *m_last : 1;
    const std::uint64_t failed = std::exchange(m_failed, 0);
    m_last = tag;
    if (step == 0 || step >= kForward)
        return 0;
    return step - 1 - std::min<std::uint64_t>(step - 1, failed);
}

}  // namespace base
