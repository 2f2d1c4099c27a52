/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions of GenICam as tests compare them
 */
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <typeinfo>

#include "Base/GCException.h"

namespace scripted {

/// What an action threw: its exception's very type, as the exception names it, and its parts.
struct Thrown {
    std::string type;
    std::string description;
    std::string source;

    bool operator==(const Thrown&) const = default;
    friend void PrintTo(const Thrown& thrown, std::ostream* out) {
        *out << thrown.type << " \"" << thrown.description << "\" from " << thrown.source;
    }
};

template <class Exception = GenICam::RuntimeException, class Action>
Thrown ThrownBy(const Action& action) {
    try {
        action();
    } catch (const GenICam::GenericException& error) {
        EXPECT_TRUE(typeid(error) == typeid(Exception)) << typeid(error).name();
        EXPECT_NE(error.GetSourceLine(), 0u);
        return {error.GetExceptionType(), error.GetDescription(), error.GetSourceFileName()};
    }
    return {};
}

}  // namespace scripted
