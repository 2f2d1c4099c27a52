/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the recorder of locks and of what is made of its records
 */

#include "Order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "../../TemporaryFolder.h"

namespace lockorder {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Pairs(const std::vector<std::string>& pairs) {
    std::string records;
    for (const std::string& pair : pairs)
        records += std::string(1, pair[0]) + "\t" + pair[1] + "\tprogram\n\tsomewhere\n";
    return records;
}

Order OrderOf(const std::vector<std::string>& pairs) {
    std::istringstream records(Pairs(pairs));
    Order order;
    order.Read(records);
    return order;
}

TEST(LockOrder, FindsNoCircleInALine) {
    const Order order = OrderOf({"bc", "ab", "ac"});
    EXPECT_THAT(order.FindCircles(), IsEmpty());
    EXPECT_THAT(order.Sorted(), ElementsAre("a", "b", "c"));
}

TEST(LockOrder, FindsACircleOfTwo) {
    EXPECT_THAT(OrderOf({"ab", "ba"}).FindCircles(), ElementsAre(ElementsAre("a", "b")));
}

TEST(LockOrder, FindsACircleOfProcesses) {
    Order order = OrderOf({"ab", "bc"});
    std::istringstream more(Pairs({"ca"}));
    order.Read(more);
    EXPECT_THAT(order.FindCircles(), ElementsAre(ElementsAre("a", "b", "c")));
}

TEST(LockOrder, FindsALockBehindAnotherOfItsName) {
    EXPECT_THAT(OrderOf({"ab", "bb"}).FindCircles(), ElementsAre(ElementsAre("b")));
}

TEST(LockOrder, SaysWhereLocksAreTaken) {
    const Order order = OrderOf({"ab", "ba"});
    std::ostringstream out;
    order.PrintCircle({"a", "b"}, out);
    EXPECT_EQ(out.str(),
              "'b' is taken behind 'a'\n  in program\n    somewhere\n'a' is taken behind 'b'\n  in program\n    "
              "somewhere\n");
}

TEST(LockOrder, LeavesKnownPairsOut) {
    Order order = OrderOf({"ab", "ba"});
    std::istringstream known("# a comment\nb -> a  # never at once\nx -> y\n");
    order.ReadKnown(known);
    EXPECT_THAT(order.FindCircles(), IsEmpty());
    EXPECT_THAT(order.FindUnusedKnown(), ElementsAre(Order::Pair("x", "y")));
}

class LockRecorder : public testing::Test {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "the sanitizer's library wants to be the first that is loaded, and so does the recorder";
#endif
    }

    Order RecordOf(const std::string& arguments) const {
        const std::string command =
            "VANTO_LOCK_ORDER='" + m_folder.Path() + "' LD_PRELOAD='" LOCK_RECORDER "' '" + LOCK_PROBE "' " + arguments;
        EXPECT_EQ(std::system(command.c_str()), 0);
        Order order;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path())) {
            std::ifstream records(entry.path());
            order.Read(records);
        }
        return order;
    }

    test_support::TemporaryFolder m_folder;
};

TEST_F(LockRecorder, RecordsWhatIsTakenBehindWhat) {
    const Order order = RecordOf("ab bc");
    EXPECT_THAT(order.FindCircles(), IsEmpty());
    EXPECT_THAT(order.Sorted(), ElementsAre("a", "b", "c"));
}

TEST_F(LockRecorder, RecordsACircleThatDoesNotHang) {
    EXPECT_THAT(RecordOf("ab bc ca").FindCircles(), ElementsAre(ElementsAre("a", "b", "c")));
}

TEST_F(LockRecorder, RecordsNoLockBehindItself) {
    EXPECT_THAT(RecordOf("aa ab").FindCircles(), IsEmpty());
}

TEST_F(LockRecorder, RecordsNoLockThatIsOnlyTried) {
    EXPECT_THAT(RecordOf("ab bA").FindCircles(), IsEmpty());
}

TEST_F(LockRecorder, RecordsALockThatIsShared) {
    EXPECT_THAT(RecordOf("ab bs sa").FindCircles(), ElementsAre(ElementsAre("a", "b", "s")));
}

TEST_F(LockRecorder, RecordsASharedLockThatOneTakesAlone) {
    EXPECT_THAT(RecordOf("ax sa").FindCircles(), ElementsAre(ElementsAre("a", "s")));
}

TEST_F(LockRecorder, RecordsWaitsForWork) {
    EXPECT_THAT(RecordOf("wa aw").FindCircles(), ElementsAre(ElementsAre("a", "w")));
}

}  // namespace
}  // namespace lockorder
