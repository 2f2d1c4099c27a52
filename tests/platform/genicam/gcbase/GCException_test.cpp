/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCException.h"

#include <gtest/gtest.h>

namespace {

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

TEST(GCException, TakesNoTextForAnEmptyOne) {
    const GenICam::GenericException error(nullptr, nullptr, 7, nullptr);
    EXPECT_STREQ(error.GetDescription(), "");
    EXPECT_STREQ(error.what(), " :  thrown (file '', line 7)");
}

TEST(GCException, NamesItsClass) {
    EXPECT_STREQ(GenICam::RuntimeException("text", "file", 1).GetExceptionType(), "RuntimeException");
    EXPECT_STREQ(GenICam::GenericException("text", "file", 1).GetExceptionType(), "GenericException");
}

}  // namespace
