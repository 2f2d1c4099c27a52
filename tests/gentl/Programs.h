/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Consumers that are programs of their own, beside a machine with a simulated camera
 */
#pragma once

#include <filesystem>
#include <sstream>
#include <string>

#include "tests/gentl/Consumer.h"
#include "tests/integration/Program.h"

namespace gentl_test {

struct Ended {
    int status;
    std::string output;
};

inline Ended Execute(const std::string& command) {
    integration::Program program(command);
    std::string output = program.ReadAll();
    return {program.ExitCode(), std::move(output)};
}

class Programs : public integration::Machine {
protected:
    Programs() {
        Add("cam0", integration::Camera("21"),
            "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=100"
            "</DeviceSpecificString>");
    }
    static Ended Consume(const std::string& loading, const std::string& ending, const std::string& port = kPort,
                         const std::string& camera = kCamera) {
        const auto program = std::filesystem::absolute(VANTO_GENTL_CONSUMER).make_preferred().string();
        return Execute(program + " \"" VANTO_GENTL_PRODUCER "\" " + loading + " " + ending + " \"" + port + "\" " +
                       camera);
    }
    /// What the program prints where it closes the library: threads before and after.
    static void ExpectNoThread(const Ended& ended) {
        EXPECT_EQ(ended.status, 0) << ended.output;
        std::istringstream numbers(ended.output);
        int before = 0;
        int after = -1;
        numbers >> before >> after;
#ifdef __SANITIZE_THREAD__
        --after;  // the sanitizer's own, which comes with the first of the program's
#endif
        EXPECT_EQ(before, after) << ended.output;
    }
};

}  // namespace gentl_test
