/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions of the library as those of vanto._errors
 */
#pragma once

#include <stdexcept>
#include <string>

namespace python {

/// The library is used in a process that was forked by one that used it before.
class ForkedProcess : public std::runtime_error {
public:
    ForkedProcess();
};

void BindErrors();

}  // namespace python
