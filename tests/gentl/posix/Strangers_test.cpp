/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Programs that bring functions of the same names, and what the producer's file exports and needs
 */
#include <set>

#include "tests/gentl/Programs.h"

namespace gentl_test {

namespace {

class Strangers : public Programs {};

TEST_F(Strangers, FunctionsOfTheSameNamesAreNotTakenForTheProducers) {
    ExpectNoThread(Consume("local", "close"));
    ExpectNoThread(Consume("global", "close"));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // whose runtimes refuse it
TEST_F(Strangers, NorWhereItIsBoundDeeply) {
    ExpectNoThread(Consume("deep", "close"));
}
#endif

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
