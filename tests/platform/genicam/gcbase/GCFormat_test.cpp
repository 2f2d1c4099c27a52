/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCFormat.h"

#include <gtest/gtest.h>

#include <limits>

#include "Base/GCException.h"
#include "Base/GCUtilities.h"
#include "os/Environment.h"

namespace {

using GenICam::FormatText;
using GenICam::gcstring;

TEST(GCFormat, PrintsTextsAndNumbers) {
    EXPECT_EQ(FormatText("'%s' is %d of %u", "x", -3, 7u), "'x' is -3 of 7");
    EXPECT_EQ(FormatText("%hs|%5s|%-5s|%.2s", gcstring("a"), "b", std::string("c"), "defg"), "a|    b|c    |de");
    EXPECT_EQ(FormatText("%5d|%-5d|%05d|%+d", 42, 42, 42, 42), "   42|42   |00042|+42");
}

TEST(GCFormat, KnowsWindowsLengthPrefixes) {
    EXPECT_EQ(FormatText("%I64i", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(FormatText("%I64u %I64x", ~std::uint64_t{0}, std::uint64_t{0xC05EC0C10C}),
              "18446744073709551615 c05ec0c10c");
    EXPECT_EQ(FormatText("%#x %#x", 255u, std::uint64_t{0x1234567890}), "0xff 0x1234567890");
}

TEST(GCFormat, CopiesIncompleteConversionsAndTakesNoArgument) {
    EXPECT_EQ(FormatText("Address=%I64 (%I64#x) %d", 5), "Address=%I64 (%I64#x) 5");
    EXPECT_EQ(FormatText("100 % of %"), "100 % of %");
    EXPECT_EQ(FormatText("%y%s", "t"), "%yt");
}

TEST(GCFormat, NeverReadsWhatWasNotPassed) {
    EXPECT_EQ(FormatText("%s %s %d", "one"), "one %s %d");
    EXPECT_EQ(FormatText("%s"), "%s");
    EXPECT_EQ(FormatText("nothing", 1, 2), "nothing");
}

TEST(GCFormat, LetsTheTypeDecideWhereLetterAndTypeDiffer) {
    EXPECT_EQ(FormatText("%s", 12), "12");
    EXPECT_EQ(FormatText("%d", "text"), "text");
    EXPECT_EQ(FormatText("%u", -1), "4294967295");
    EXPECT_EQ(FormatText("%p", std::uint64_t{16}), "0x10");
    EXPECT_EQ(FormatText("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(GCFormat, BoundsWidths) {
    EXPECT_LE(FormatText("%999999999d", 1).size(), 4096u);
}

TEST(GCFormat, TreatsArgumentsAsData) {
    EXPECT_EQ(FormatText("<%s>", "%s%n%d"), "<%s%n%d>");
}

TEST(GCException, CarriesDescriptionSourceLineAndType) {
    try {
        throw GenICam::ExceptionReporter<GenICam::RuntimeException>("Source", 12, "RuntimeException")
            .Report("a %s", "b");
    } catch (const GenICam::GenericException& error) {
        EXPECT_STREQ(error.GetDescription(), "a b");
        EXPECT_STREQ(error.GetSourceFileName(), "Source");
        EXPECT_EQ(error.GetSourceLine(), 12u);
        EXPECT_STREQ(error.GetExceptionType(), "RuntimeException");
        EXPECT_STREQ(error.what(), "a b : RuntimeException thrown (file 'Source', line 12)");
    }
}

TEST(GCUtilities, ReplacesEnvironmentVariablesOnce) {
    os::SetEnvironment("GCBASE_TEST_A", "$(GCBASE_TEST_A) b");
    gcstring text("x/$(GCBASE_TEST_A)/$(GCBASE_TEST_NONE)/$(open");
    GenICam::ReplaceEnvironmentVariables(text);
    EXPECT_EQ(text, "x/$(GCBASE_TEST_A) b//$(open");
    gcstring blanks("a $(GCBASE_TEST_NONE) b");
    GenICam::ReplaceEnvironmentVariables(blanks, true);
    EXPECT_EQ(blanks, "a%20%20b");
}

TEST(GCString, ComparesCaseSensitively) {
    EXPECT_FALSE(gcstring("a") == gcstring("A"));
    EXPECT_TRUE(gcstring("A") < gcstring("a"));
    EXPECT_EQ(gcstring(static_cast<const char*>(nullptr)), "");
    EXPECT_EQ(gcstring("abc").find("z"), gcstring::_npos());
}

}  // namespace
