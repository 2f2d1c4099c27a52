/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what error codes mean
 */

#include "Failures.h"

#include <gtest/gtest.h>

#include "CLProtocol/CLException.h"

namespace {

using CLProtocol::CLErrException;
using CLProtocol::LineEvidence;
using CLProtocol::ThrowFailure;

std::string TypeOf(std::int32_t code, LineEvidence evidence) {
    try {
        ThrowFailure("text", code, evidence);
    } catch (const GenICam::GenericException& error) {
        EXPECT_STREQ(error.GetDescription(), "text");
        return error.GetExceptionType();
    }
}

const std::vector<LineEvidence> kAll = {LineEvidence::kUnused, LineEvidence::kSilent, LineEvidence::kAnswered,
                                        LineEvidence::kFailed};

TEST(Failures, OfTheCameraLinkStandardAreTheLines) {
    for (const std::int32_t code : {-10002, -10003, -10004, -10005, -10006, -10007, -10010, -10012, -10098, -10099})
        for (const LineEvidence evidence : kAll)
            EXPECT_EQ(TypeOf(code, evidence), "CLErrException") << code;
}

TEST(Failures, ThatSayNothingOfTheLineAreNotTheLines) {
    for (const LineEvidence evidence : kAll) {
        EXPECT_EQ(TypeOf(-10001, evidence), "InvalidArgumentException");
        EXPECT_EQ(TypeOf(-10008, evidence), "OutOfRangeException");
        EXPECT_EQ(TypeOf(-10009, evidence), "BadAllocException");
        EXPECT_EQ(TypeOf(-10011, evidence), "InvalidArgumentException");
    }
}

TEST(Failures, OfCLProtocolAreRefusalsWhereTheyAreNotOfTheDevice) {
    EXPECT_EQ(TypeOf(-20100, LineEvidence::kUnused), "InvalidArgumentException");
    EXPECT_EQ(TypeOf(-20101, LineEvidence::kAnswered), "CLErrException");
    EXPECT_EQ(TypeOf(-20102, LineEvidence::kUnused), "AccessException");
    EXPECT_EQ(TypeOf(-20103, LineEvidence::kAnswered), "CLErrException");
    EXPECT_EQ(TypeOf(-20105, LineEvidence::kUnused), "AccessException");
    EXPECT_EQ(TypeOf(-20106, LineEvidence::kUnused), "AccessException");
    EXPECT_EQ(TypeOf(-20107, LineEvidence::kUnused), "InvalidArgumentException");
    EXPECT_EQ(TypeOf(-20108, LineEvidence::kUnused), "OutOfRangeException");
}

struct Case {
    std::int32_t code;
    const char* type;
};

TEST(Failures, OfTheCameraHaveAFittingKind) {
    for (const auto& [code, type] :
         std::initializer_list<Case>{{-30101, "AccessException"},          {-30102, "InvalidArgumentException"},
                                     {-30103, "OutOfRangeException"},      {-30104, "AccessException"},
                                     {-30105, "InvalidArgumentException"}, {-30106, "AccessException"},
                                     {-30107, "TimeoutException"},         {-30111, "TimeoutException"},
                                     {-30114, "InvalidArgumentException"}, {-30115, "AccessException"},
                                     {-30163, "AccessException"},          {-30180, "AccessException"},
                                     {-30181, "AccessException"},          {-30182, "AccessException"},
                                     {-30199, "AccessException"},          {-30210, "RuntimeException"},
                                     {-30211, "RuntimeException"},         {-30212, "TimeoutException"},
                                     {-30213, "InvalidArgumentException"}, {-30214, "OutOfRangeException"},
                                     {-30215, "OutOfRangeException"},      {-30216, "AccessException"},
                                     {-30217, "TimeoutException"},         {-30299, "RuntimeException"}}) {
        EXPECT_EQ(TypeOf(code, LineEvidence::kAnswered), type) << code;
        EXPECT_EQ(TypeOf(code, LineEvidence::kUnused), type) << code;
    }
}

TEST(Failures, OfADriverAreTheLinesWhereNobodyAnswered) {
    for (const std::int32_t code : {-30001, -30104, -30107, -30199, -30214, -30299}) {
        EXPECT_EQ(TypeOf(code, LineEvidence::kSilent), "CLErrException") << code;
        EXPECT_EQ(TypeOf(code, LineEvidence::kFailed), "CLErrException") << code;
    }
    for (const LineEvidence evidence : kAll)
        for (const std::int32_t code : {-30209, -30218, -30219})
            EXPECT_EQ(TypeOf(code, evidence), "CLErrException") << code;
}

TEST(Failures, ThatNobodyKnowsAreRefusalsOnlyWhereTheCameraAnswered) {
    for (const std::int32_t code : {-30000, -30001, -30100, -30164, -30179, -30200, -30300, -30999}) {
        EXPECT_EQ(TypeOf(code, LineEvidence::kAnswered), "AccessException") << code;
        EXPECT_EQ(TypeOf(code, LineEvidence::kUnused), "CLErrException") << code;
    }
}

TEST(Failures, OfNoKnownRangeAreTheLines) {
    for (const std::int32_t code : {-1, -9999, -11000, -20104, -29999, -31000})
        for (const LineEvidence evidence : kAll)
            EXPECT_EQ(TypeOf(code, evidence), "CLErrException") << code;
}

TEST(Failures, OfTheLineCarryTheirCode) {
    try {
        ThrowFailure("text", -10004, LineEvidence::kSilent);
    } catch (const CLErrException& error) {
        EXPECT_EQ(error.GetErrorCode(), -10004);
    }
}

}  // namespace
