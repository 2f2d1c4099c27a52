/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of programs and libraries that are started without standard streams
 */

#include "os/StandardStreams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "../../../support/ClosedStreams.h"
#include "os/File.h"
#include "os/posix/Descriptor.h"

namespace {

using test_support::ClosedStreams;
using test_support::IsOpen;

TEST(StandardStreams, AreOccupiedWhereTheyAreClosed) {
    const ClosedStreams closed;
    os::OccupyStandardStreams();
    char byte = 'x';
    EXPECT_EQ(::read(0, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(::write(1, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(::write(2, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    const int next = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    EXPECT_GT(next, 2);
    ::close(next);
}

TEST(StandardStreams, StayAsTheyAreWhereTheyAreOpen) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    {
        const ClosedStreams closed;
        ::dup2(ends[1], 1);
        os::OccupyStandardStreams();
        EXPECT_EQ(::write(1, "x", 1), 1);
    }
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 1);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(StandardStreams, WereThereWhenThisBegan) {
    const ClosedStreams closed;
    EXPECT_TRUE(os::HadStandardError());
}

TEST(StandardStreams, AreNoPlaceForDescriptorsOfLibraries) {
    const ClosedStreams closed;
    const int file = os::AboveStandardDescriptors(::open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_GT(file, 2);
    EXPECT_EQ(::fcntl(file, F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(IsOpen(0));
    EXPECT_EQ(os::AboveStandardDescriptors(file), file);
    ::close(file);
}

TEST(StandardStreams, LeaveAFailureAsItWas) {
    errno = ENOENT;
    EXPECT_EQ(os::AboveStandardDescriptors(-1), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST(StandardStreams, AreNoPlaceForFiles) {
    const ClosedStreams closed;
    const os::OpenFile file = os::OpenPlainFile("/proc/self/exe");
    ASSERT_NE(file, nullptr);
    EXPECT_GT(::fileno(file.get()), 2);
}

}  // namespace
