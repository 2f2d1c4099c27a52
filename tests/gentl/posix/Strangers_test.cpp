/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Other processes with the producer: they bring functions of the same names, close what they like, and just end
 */
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>

#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

struct Ended {
    int status;
    std::string output;
};

Ended Execute(const std::string& command) {
    std::FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    std::string output;
    std::array<char, 4096> text{};
    while (std::fgets(text.data(), text.size(), pipe) != nullptr)
        output += text.data();
    return {::pclose(pipe), output};
}

class Strangers : public integration::Machine {
protected:
    Strangers() {
        Add("cam0", integration::Camera("21"),
            "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=100"
            "</DeviceSpecificString>");
    }
    static Ended Consume(const std::string& loading, const std::string& ending) {
        return Execute(std::string(VANTO_CLASHING_CONSUMER " '" VANTO_GENTL_PRODUCER "' ") + loading + " " + ending +
                       " '" + kPort + "' " + kCamera);
    }
    // What the program prints where it closes the library: threads before and after.
    static void ExpectNoThread(const Ended& ended) {
        EXPECT_EQ(ended.status, 0) << ended.output;
        std::istringstream numbers(ended.output);
        int before = 0;
        int after = -1;
        numbers >> before >> after;
        EXPECT_EQ(before, after) << ended.output;
    }
};

TEST_F(Strangers, FunctionsOfTheSameNamesAreNotTakenForTheProducers) {
    ExpectNoThread(Consume("local", "close"));
    ExpectNoThread(Consume("global", "close"));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // whose runtimes refuse it
TEST_F(Strangers, NorWhereItIsBoundDeeply) {
    ExpectNoThread(Consume("deep", "close"));
}
#endif

TEST_F(Strangers, ClosingTheLibraryWithEverythingOpenLeavesNoThread) {
    ExpectNoThread(Consume("local", "leave"));
}

TEST_F(Strangers, WhoNeverClosesTheLibraryCanEnd) {
    const Ended ended = Consume("local", "exit");
    EXPECT_EQ(ended.status, 0) << ended.output;
    EXPECT_EQ(SerialNumbers(), std::vector<std::string>{"21"}) << "the camera is free again";
}

TEST_F(Strangers, MessagesGoToTheLogsOwnCategory) {
    const std::string log = m_folder / "log";
    const scripted::ScopedVariable rules("VANTO_LOG", "Vanto.GenTL:debug");
    const scripted::ScopedVariable file("VANTO_LOG_FILE", log);
    EXPECT_NE(
        Execute(std::string(VANTO_CLASHING_CONSUMER " '" VANTO_GENTL_PRODUCER "' local close nowhere nobody")).status,
        0);
    std::ifstream stream(log);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NE(text.find("[Vanto.GenTL]"), std::string::npos) << text;
    EXPECT_NE(text.find("GC_ERR_INVALID_ID: There is no interface 'nowhere'"), std::string::npos) << text;
}

TEST_F(Strangers, TheFileExportsNothingElse) {
    const Ended ended = Execute("nm -D --defined-only '" VANTO_GENTL_PRODUCER "'");
    ASSERT_EQ(ended.status, 0) << ended.output;
    std::istringstream lines(ended.output);
    std::set<std::string> names;
    for (std::string address, kind, name; lines >> address >> kind >> name;)
        names.insert(name);
    std::set<std::string> expected;
#define GENTL_NAME(name) expected.insert(#name);
    GENTL_FUNCTIONS(GENTL_NAME)
#undef GENTL_NAME
    EXPECT_EQ(names, expected);
}

// What it needs is the system's, or has its version in the names of its functions, or is a C library.
TEST_F(Strangers, TheFileNeedsNoLibraryOfOurs) {
    const Ended ended = Execute("objdump -p '" VANTO_GENTL_PRODUCER "'");
    ASSERT_EQ(ended.status, 0) << ended.output;
    std::istringstream lines(ended.output);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        std::string library;
        words >> word >> library;
        if (word != "NEEDED")
            continue;
        for (const char* const name : {"GCBase", "GenApi", "CLProtocol", "Vanto", "fmt", "spdlog", "boost", "pugixml"})
            EXPECT_EQ(library.find(name), std::string::npos) << library;
    }
}

}  // namespace

}  // namespace gentl_test
