/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Headers that most tests read
 */

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <future>
#include <numeric>
#include <random>

#include "standard.h"
