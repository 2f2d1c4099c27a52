/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long a port pauses between the attempts of a probe, as the system is asked for it
 */

#include <time.h>

#include <mutex>
#include <vector>

#include "tests/VantoCLSer/PortFixture.h"

namespace {

std::mutex g_lock;
std::vector<long>* g_pauses = nullptr;  // milliseconds, while a test wants to know them

}  // namespace

// In place of the C library's, for this program: every pause of a thread comes by here.
extern "C" int nanosleep(const timespec* time, timespec* remaining) {
    {
        const std::lock_guard lock(g_lock);
        if (g_pauses != nullptr)
            g_pauses->push_back(time->tv_sec * 1000 + time->tv_nsec / 1000000);
    }
    const int result = ::clock_nanosleep(CLOCK_REALTIME, 0, time, remaining);
    if (result == 0)
        return 0;
    errno = result;
    return -1;
}

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

class ProbePause : public PortTest {
protected:
    ProbePause() { m_templates.push_back(scripted::FullDeviceId("Marlow")); }

    std::vector<long> PausesOfAProbe() {
        std::vector<long> pauses;
        {
            const std::lock_guard lock(g_lock);
            g_pauses = &pauses;
        }
        m_port.Probe(&m_templates);
        const std::lock_guard lock(g_lock);
        g_pauses = nullptr;
        return pauses;
    }

    gcstring_vector m_templates;
};

TEST_F(ProbePause, FollowsEachAttemptTheLastOneIncluded) {
    scripted::Driver().onProbe = [](auto...) { return -30001; };
    EXPECT_THAT(PausesOfAProbe(), ElementsAre(50, 50));
}

TEST_F(ProbePause, FollowsNoAttemptThatNobodyAnswered) {
    scripted::Driver().onProbe = [](auto...) { return -10004; };
    EXPECT_THAT(PausesOfAProbe(), IsEmpty());
}

TEST_F(ProbePause, FollowsNoAttemptThatFoundNothing) {
    m_templates[0] = scripted::FullDeviceId("Another");
    EXPECT_THAT(PausesOfAProbe(), IsEmpty());
}

}  // namespace
}  // namespace Vanto
