/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Small helpers of the GenICam base
 */
#pragma once

#include "Base/GCString.h"

namespace GenICam {

/// Replaces $(NAME) by the value of the environment variable NAME, by nothing where there is none. With
/// \a replaceBlankBy20 blanks of the result become "%20", as a URL asks for. A text with an unfinished "$(" keeps it.
GCBASE_API void ReplaceEnvironmentVariables(gcstring& buffer, bool replaceBlankBy20 = false);

}  // namespace GenICam
