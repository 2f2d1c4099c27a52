/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The last error of each thread
 */
#include "support/LastError.h"

#include <algorithm>
#include <array>

namespace gentl {

namespace {

// Without a destructor: a thread that ends after the library was unloaded must find nothing to run. A new life of the
// library begins without errors.
struct LastError {
    GC_ERROR code = GC_ERR_SUCCESS;
    std::size_t length = 0;
    std::array<char, 1024> text{};
};
thread_local LastError t_lastError;

}  // namespace

/// Keeps an error; its text is cut to what fits. Successes do not come here: they leave the last error alone.
void StoreLastError(GC_ERROR code, std::string_view text) noexcept {
    t_lastError.code = code;
    t_lastError.length = std::min(text.size(), t_lastError.text.size());
    std::copy_n(text.begin(), t_lastError.length, t_lastError.text.begin());
}

GC_ERROR LastErrorCode() noexcept {
    return t_lastError.code;
}

std::string_view LastErrorText() noexcept {
    return t_lastError.code == GC_ERR_SUCCESS ? std::string_view("No Error")
                                              : std::string_view(t_lastError.text.data(), t_lastError.length);
}

}  // namespace gentl
