/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: an operation that meets a shortage of memory at each of its allocations
 */
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "../../../WaitUntil.h"
#include "Base/GCException.h"
#include "failing/FailingAllocation.h"

namespace failing {

using Step = std::function<void()>;

/// One error of a kind that callers expect, or none where the memory was not needed.
inline void Try(const Step& operation) {
    try {
        operation();
    } catch (const std::bad_alloc&) {
    } catch (const GenICam::GenericException&) {
    }
}

/// Whether all blocks but those are given back. Threads that have ended give their last memory back in their own time.
inline bool HaveOnlyBlocksLeft(std::ptrdiff_t expected) {
    return test_support::WaitUntil([expected] { return LiveBlocks() == expected; }, std::chrono::seconds(2));
}

/// Operations that fail one allocation later each time.
class EachAllocation {
public:
    /// The whole way is gone before the first operation, so that what is kept for the rest of the process is there, and
    /// behind each: nothing of a failure may be in its way.
    EachAllocation(Shortage shortage, Step wholeWay) : m_shortage(shortage), m_wholeWay(std::move(wholeWay)) {}

    /// Runs an operation until it meets no failure; returns how often.
    std::size_t Fail(const Step& prepare, const Step& operation, const Step& cleanUp) const {
        for (int rounds = 0; rounds < 3; ++rounds)
            m_wholeWay();
        std::size_t index = 0;
        for (bool hasFailed = true; hasFailed && !testing::Test::HasFailure(); ++index) {
            SCOPED_TRACE("allocation " + std::to_string(index));
            std::ptrdiff_t before = 0;
            int tries = 0;  // what an error leaves the first time, and no other time, is kept for the next one
            do {
                before = LiveBlocks();
                prepare();
                hasFailed = RunShortOfMemory(index, operation);
                cleanUp();
                m_wholeWay();
            } while (!HaveOnlyBlocksLeft(before) && ++tries < 2);
            EXPECT_LT(tries, 2) << LiveBlocks() - before << " blocks more than before";
        }
        if (testing::Test::HasFailure())
            PrintWhereItFailed();
        testing::Test::RecordProperty("allocations", static_cast<int>(index));
        return index;
    }

private:
    bool RunShortOfMemory(std::size_t index, const Step& operation) const {
        const FailingAllocation shortage(index, m_shortage);
        Try(operation);
        return shortage.HasFailed();
    }

    const Shortage m_shortage;
    const Step m_wholeWay;
};

}  // namespace failing
