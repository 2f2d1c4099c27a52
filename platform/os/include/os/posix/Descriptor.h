/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where file descriptors of libraries may lie
 */
#pragma once

namespace os {

int AboveStandardDescriptors(int descriptor) noexcept;

}  // namespace os
