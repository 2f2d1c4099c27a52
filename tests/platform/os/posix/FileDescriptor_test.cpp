/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of descriptors that close themselves
 */

#include "os/posix/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace {

using os::FileDescriptor;

int Opened() {
    return ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool IsOpen(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

TEST(FileDescriptor, ClosesItself) {
    const int fd = Opened();
    {
        const FileDescriptor descriptor(fd);
        EXPECT_EQ(descriptor.Get(), fd);
        EXPECT_TRUE(descriptor.IsOpen());
        EXPECT_TRUE(IsOpen(fd));
    }
    EXPECT_FALSE(IsOpen(fd));
}

TEST(FileDescriptor, ClosesOnce) {
    FileDescriptor descriptor(Opened());
    const int fd = descriptor.Get();
    descriptor.Close();
    EXPECT_FALSE(descriptor.IsOpen());
    const FileDescriptor next(Opened());  // takes the number that is free again
    EXPECT_EQ(next.Get(), fd);
    descriptor.Close();
    EXPECT_TRUE(IsOpen(fd));
}

TEST(FileDescriptor, GoesOverToWhoTakesIt) {
    FileDescriptor first(Opened());
    const int fd = first.Get();
    FileDescriptor second(std::move(first));
    EXPECT_EQ(second.Get(), fd);
    EXPECT_FALSE(first.IsOpen());
    FileDescriptor third;
    third = std::move(second);
    EXPECT_EQ(third.Get(), fd);
    EXPECT_FALSE(second.IsOpen());
    EXPECT_TRUE(IsOpen(fd));
}

TEST(FileDescriptor, TellsWhichCallFailedAndWhy) {
    try {
        const FileDescriptor descriptor(::open("/nowhere", O_RDONLY), "open of /nowhere");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), ENOENT);
        EXPECT_STREQ(error.what(), "open of /nowhere: No such file or directory");
    }
    const FileDescriptor zero(::fcntl(Opened(), F_DUPFD_CLOEXEC, 0), "fcntl");
    EXPECT_TRUE(zero.IsOpen());
}

}  // namespace
