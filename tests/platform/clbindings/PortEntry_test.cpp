/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what the fields of a port mean
 */
#include "clbindings/PortEntry.h"

#include <gtest/gtest.h>

namespace Vanto {
namespace {

bool IsEnabledBy(const char* word) {
    PortEntry entry;
    entry.enabled.text = word;
    return entry.IsEnabled();
}

TEST(PortEntry, IsEnabledByThreeWords) {
    for (const char* word : {"yes", "YES", "true", "True", "1"})
        EXPECT_TRUE(IsEnabledBy(word)) << word;
    for (const char* word : {"", "no", "0", "on", "11", "true "})
        EXPECT_FALSE(IsEnabledBy(word)) << word;
}

TEST(PortEntry, KnowsItsFieldsByTheirNames) {
    for (const PortField& field : kPortFields)
        EXPECT_EQ(FindPortField(field.name), &field);
    EXPECT_EQ(FindPortField("Comment"), nullptr);
}

TEST(PortEntry, OfAllNamesOnlyIdMayBeWrittenInAnyCase) {
    ASSERT_NE(FindPortField("iD"), nullptr);
    EXPECT_EQ(FindPortField("iD")->value, &PortEntry::id);
    EXPECT_EQ(FindPortField("model"), nullptr);
}

}  // namespace
}  // namespace Vanto
