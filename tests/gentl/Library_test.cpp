/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the producer's file offers, and its lives in a process
 */
#include <fstream>

#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

class Lives : public testing::Test {};

GC_ERROR InfoResult(TL_INFO_CMD command) {
    std::size_t size = 0;
    return TL().GCGetInfo(command, nullptr, nullptr, &size);
}

TEST_F(Lives, EverythingAnswersNotInitializedBefore) {
    std::size_t size = 0;
    GC_ERROR code = 0;
    TL_HANDLE system = nullptr;
    EXPECT_EQ(TL().GCCloseLib(), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(TL().GCGetLastError(&code, nullptr, &size), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(TL().TLOpen(&system), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(TL().EventKill(&size), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(InfoResult(TL_INFO_ID), GC_ERR_NOT_INITIALIZED);
}

TEST_F(Lives, ASecondInitIsRefusedAndCountsNothing) {
    EXPECT_EQ(TL().GCInitLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().GCInitLib(), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().GCCloseLib(), GC_ERR_NOT_INITIALIZED);
}

TEST_F(Lives, AThousandOfThemLeaveNothing) {
    for (int life = 0; life < 1000; ++life) {
        ASSERT_EQ(TL().GCInitLib(), GC_ERR_SUCCESS);
        ASSERT_EQ(TL().GCCloseLib(), GC_ERR_SUCCESS);
    }
}

TEST_F(Lives, TheFileExportsTheFunctionsOfTheStandard) {
    std::ifstream list(VANTO_GENTL_FUNCTIONS);
    int count = 0;
    for (std::string line; std::getline(list, line);) {
        if (!line.starts_with("        ") || !line.ends_with(";"))
            continue;
        const std::string name = line.substr(8, line.size() - 9);
        if (name != "*") {
            EXPECT_NE(File().FindSymbol(name.c_str()), nullptr) << name;
            ++count;
        }
    }
    EXPECT_EQ(count, 64);
}

class ProducerInfos : public Consumer {};

TEST_F(ProducerInfos, TellWhoItIs) {
    const auto text = [](TL_INFO_CMD command) {
        return InfoText([&](INFO_DATATYPE* type, void* buffer, std::size_t* size) {
            return TL().GCGetInfo(command, type, buffer, size);
        });
    };
    EXPECT_EQ(text(TL_INFO_VENDOR), "Vanto");
    EXPECT_EQ(text(TL_INFO_TLTYPE), "CL");
    EXPECT_EQ(text(TL_INFO_NAME), "vanto-cl.cti");
    EXPECT_EQ(text(TL_INFO_PATHNAME), std::filesystem::canonical(VANTO_GENTL_PRODUCER).string());
    EXPECT_NE(text(TL_INFO_VERSION), "");
}

TEST_F(ProducerInfos, TellTheVersionOfTheStandard) {
    const auto number = [](TL_INFO_CMD command) {
        return InfoValue<std::uint32_t>(INFO_DATATYPE_UINT32, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().GCGetInfo(command, type, value, size);
        });
    };
    EXPECT_EQ(number(TL_INFO_GENTL_VER_MAJOR), 1u);
    EXPECT_EQ(number(TL_INFO_GENTL_VER_MINOR), 6u);
}

TEST_F(ProducerInfos, AnUnknownCommandIsNotImplemented) {
    EXPECT_EQ(InfoResult(11), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(InfoResult(-1), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(InfoResult(1000), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(ProducerInfos, ABufferThatIsTooSmallGetsNothing) {
    char text[4] = "abc";
    std::size_t size = sizeof text;
    INFO_DATATYPE type = 42;
    EXPECT_EQ(TL().GCGetInfo(TL_INFO_VENDOR, &type, text, &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(size, sizeof text);
    EXPECT_EQ(type, 42);
}

TEST_F(ProducerInfos, WithoutAPlaceForTheSizeTheyAreRefused) {
    EXPECT_EQ(TL().GCGetInfo(TL_INFO_VENDOR, nullptr, nullptr, nullptr), GC_ERR_INVALID_PARAMETER);
    auto* const nowhere = reinterpret_cast<std::size_t*>(~std::uintptr_t{0});
    EXPECT_EQ(TL().GCGetInfo(TL_INFO_VENDOR, nullptr, nullptr, nowhere), GC_ERR_INVALID_PARAMETER);
}

class LastErrors : public Consumer {};

TEST_F(LastErrors, StayUntilTheNextOne) {
    EXPECT_EQ(InfoResult(1000), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(InfoResult(TL_INFO_ID), GC_ERR_SUCCESS);
    std::string text;
    EXPECT_EQ(LastError(&text), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_NE(text.find("1000"), std::string::npos) << text;
}

TEST_F(LastErrors, OfAThreadWithoutErrorsIsNoError) {
    std::thread([] {
        std::string text;
        EXPECT_EQ(LastError(&text), GC_ERR_SUCCESS);
        EXPECT_EQ(text, "No Error");
    }).join();
}

TEST_F(LastErrors, AnErrorOfAskingIsNotKept) {
    EXPECT_EQ(InfoResult(1000), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().GCGetLastError(nullptr, nullptr, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(LastError(), GC_ERR_NOT_IMPLEMENTED);
}

}  // namespace

}  // namespace gentl_test
