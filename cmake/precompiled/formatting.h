/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Headers that sources read which format texts
 */

#include <fmt/format.h>

#include "standard.h"
