/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The producer's functions, and a consumer's ways to call them
 */
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "os/Library.h"
#include "tests/gentl/Functions.h"

namespace gentl_test {

inline const os::Library& File() {
    static const os::Library library(VANTO_GENTL_PRODUCER);
    return library;
}

/// The functions under their own names.
struct Producer {
#define GENTL_MEMBER(name) decltype(::name)* const name = File().Get<decltype(::name)>(#name);
    GENTL_FUNCTIONS(GENTL_MEMBER)
#undef GENTL_MEMBER
};

inline const Producer& TL() {
    static const Producer producer;
    return producer;
}

/// What a call says that writes a text in two steps.
template <class Call>
std::string Text(Call&& call) {
    std::size_t size = 99;  // consumers leave it as it happens to be
    if (const GC_ERROR result = call(nullptr, &size); result != GC_ERR_SUCCESS)
        return "error " + std::to_string(result);
    std::vector<char> text(size + 8, '#');
    const std::size_t needed = size;
    size = text.size();
    if (const GC_ERROR result = call(text.data(), &size); result != GC_ERR_SUCCESS)
        return "error " + std::to_string(result);
    EXPECT_EQ(size, needed);
    EXPECT_EQ(text[size], '#') << "more was written than was said";
    return text.data();
}

/// The same for an information command, whose type must be STRING.
template <class Call>
std::string InfoText(Call&& call) {
    return Text([&](char* text, std::size_t* size) {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        const GC_ERROR result = call(&type, text, size);
        if (result == GC_ERR_SUCCESS) {
            EXPECT_EQ(type, INFO_DATATYPE_STRING);
        }
        return result;
    });
}

/// The value of an information command of a number, whose type and size must be the ones expected.
template <class T, class Call>
T InfoValue(INFO_DATATYPE expected, Call&& call) {
    T value{};
    std::size_t size = 77;
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    EXPECT_EQ(call(&type, nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(type, expected);
    EXPECT_EQ(size, sizeof value);
    type = INFO_DATATYPE_UNKNOWN;
    size = sizeof value;
    EXPECT_EQ(call(&type, &value, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(type, expected);
    return value;
}

inline GC_ERROR LastError(std::string* text = nullptr) {
    GC_ERROR code = 1;
    const std::string read =
        Text([&](char* buffer, std::size_t* size) { return TL().GCGetLastError(&code, buffer, size); });
    if (text != nullptr)
        *text = read;
    return code;
}

}  // namespace gentl_test
