/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A machine with one camera that has a frame grabber, and what tests of errors need
 */
#pragma once

#include <string>

#include "tests/integration/Machine.h"
#include "vanto/Camera.h"

namespace application {

using integration::Camera;
using testing::HasSubstr;

inline constexpr const char* kGrabber =
    "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=200</DeviceSpecificString>";

class ApplicationTest : public integration::Machine {
protected:
    ApplicationTest() { Add("cam0", Camera("21"), kGrabber); }
};

/// The error of a type that something throws; fails the test when it throws nothing or something else.
template <class Error, class Action>
Error Thrown(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

}  // namespace application
