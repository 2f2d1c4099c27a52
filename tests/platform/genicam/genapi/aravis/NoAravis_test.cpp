/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Says that the comparison with an independent engine could not be made
 */

#include <gtest/gtest.h>

TEST(Aravis, IsNotInstalled) {
    GTEST_SKIP() << "libaravis-dev is missing: nothing to compare with";
}
