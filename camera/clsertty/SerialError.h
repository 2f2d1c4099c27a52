/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one exception type of the serial library: a Camera Link error code and a text for people
 */
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ClSerTty {

class SerialError : public std::runtime_error {
public:
    SerialError(std::int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}

    std::int32_t Code() const noexcept { return m_code; }

private:
    std::int32_t m_code;
};

}  // namespace ClSerTty
