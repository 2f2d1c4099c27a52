/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A process that was copied has none of the producer's threads, so it is refused
 */
#include <sys/wait.h>
#include <unistd.h>

#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

class Fork : public Consumer {
protected:
    // How many of the calls of a copied process are answered as if it had never called GCInitLib.
    int RefusalsInACopy() const {
        const pid_t child = ::fork();
        if (child == 0) {
            TL_HANDLE other = nullptr;
            std::uint32_t count = 0;
            int refusals = 0;
            for (const GC_ERROR result : {TL().TLOpen(&other), TL().TLGetNumInterfaces(system, &count),
                                          TL().EventKill(event), TL().GCCloseLib(), TL().GCInitLib()})
                refusals += result == GC_ERR_NOT_INITIALIZED ? 1 : 0;
            ::_exit(refusals);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(Fork, IsRefusedWhileTheParentGoesOn) {
    AddCamera();
    OpenStream();
    Announce();
    QueueAll();
    Register();
    Start();
    EXPECT_EQ(RefusalsInACopy(), 5);
    EXPECT_NE(Next(), nullptr);
    Stop();
}

}  // namespace

}  // namespace gentl_test
