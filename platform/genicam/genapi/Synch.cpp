/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CLock: the recursive lock of GenICam
 */

#include "GenApi/Synch.h"

namespace GenApi {

bool CLock::TryLockFor(std::chrono::milliseconds time) {
#ifdef __SANITIZE_THREAD__
    // Its runtime does not see a mutex that is taken by the clock that is never set.
    return m_mutex.try_lock_until(std::chrono::system_clock::now() + time);
#else
    return m_mutex.try_lock_for(time);
#endif
}

}  // namespace GenApi
