/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Headers that the Python module reads
 */

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "standard.h"
