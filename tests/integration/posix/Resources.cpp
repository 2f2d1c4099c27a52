/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Open files and threads of this process
 */

#include "../Resources.h"

#include <filesystem>
#include <iterator>

namespace integration {

std::size_t Resources() {
    using std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(directory_iterator("/proc/self/fd"), directory_iterator()) +
                                    std::distance(directory_iterator("/proc/self/task"), directory_iterator()));
}

}  // namespace integration
