/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Headers that tests of ports and grabbers read
 */

#include <boost/thread/recursive_mutex.hpp>

#include "tests.h"
