/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a serial library says about an error code
 */
#pragma once

#include <cstdint>
#include <string>

#include "Texts.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

ForeignText AskForErrorText(const std::string& library, const std::string& maker, PclGetErrorText function,
                            std::int32_t code);

}  // namespace CLProtocol
