/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Headers that most tests read
 */

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

#include "standard.h"
