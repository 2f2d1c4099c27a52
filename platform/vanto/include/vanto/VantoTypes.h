/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What every header of the base library needs
 */
#pragma once

#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "Base/GCTypes.h"

#ifdef VantoBase_EXPORTS
#define VANTOBASE_API GCBASE_EXPORT
#else
#define VANTOBASE_API GCBASE_IMPORT
#endif

namespace Vanto {

using GenICam::gcstring;
using GenICam::gcstring_vector;
using StringList_t = GenICam::gcstring_vector;

}  // namespace Vanto
