/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of texts within XML
 */
#include "base/XmlText.h"

#include <gtest/gtest.h>

namespace {

TEST(XmlText, HasEntitiesForWhatMeansSomethingInXml) {
    EXPECT_EQ(base::XmlText("a<b> & \"c\""), "a&lt;b&gt; &amp; &quot;c&quot;");
}

TEST(XmlText, LeavesAllOtherBytes) {
    EXPECT_EQ(base::XmlText("\xC3\xA4 'x'\n"), "\xC3\xA4 'x'\n");
}

}  // namespace
