/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions of the libraries below as errors of the interface
 */
#pragma once

namespace gentl {

/// Throws the exception that is being handled as a GenTLError: what refuses keeps its meaning, a camera or frame
/// grabber that does not answer is IO.
[[noreturn]] void RethrowAsGenTLError();

}  // namespace gentl
