/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CLErrException
 */

#include "CLProtocol/CLException.h"

namespace CLProtocol {

// Here so that the type has one home, which catching it in another library needs.
CLErrException::~CLErrException() = default;

}  // namespace CLProtocol
