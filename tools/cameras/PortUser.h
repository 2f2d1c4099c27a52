/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who uses a port that can't be opened
 */
#pragma once

#include <string>

#include "cameras/PortWatch.h"
#include "output/Json.h"

namespace tools {

/// A program, as far as the serial library could tell.
struct PortUser {
    std::string program;  ///< empty when unknown
    int pid = 0;          ///< 0 when unknown

    /// "minicom (4711)", "process 4711" or "another program".
    std::string Text() const;
    Json ToJson() const;
};

/// Who has the port of a failed look; of a port that is in use.
PortUser UserOf(const PortNews& news);

}  // namespace tools
