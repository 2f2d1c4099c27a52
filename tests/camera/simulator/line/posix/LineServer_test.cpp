/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lines lent to several borrowers at once
 */

#include "line/LineServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <list>

#include "../../../../support/TemporaryFolder.h"
#include "../../../../support/WaitUntil.h"
#include "line/LineMessage.h"
#include "os/posix/FileDescriptor.h"

namespace MarlowSim {
namespace {

namespace fs = std::filesystem;
using Type = LineMessageType;

/// What a simulator that borrows a line says and hears.
class Borrower {
public:
    explicit Borrower(std::uint16_t port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket") {
        const timeval longest{30, 0};
        ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof(longest));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(m_socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    }

    void Say(const gencp::Bytes& bytes) {
        EXPECT_EQ(::send(m_socket.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
    }
    /// Nothing when the lender has hung up.
    std::optional<LineMessage> Hear() {
        for (;;) {
            if (auto message = TakeLineMessage(m_received))
                return message;
            std::array<std::uint8_t, 256> buffer;
            const ssize_t count = ::recv(m_socket.Get(), buffer.data(), buffer.size(), 0);
            if (count <= 0)
                return std::nullopt;
            m_received.insert(m_received.end(), buffer.begin(), buffer.begin() + count);
        }
    }
    std::string Open(const std::string& name) {
        Say(EncodeText(Type::kOpen, name));
        const auto answer = Hear();
        return answer && answer->type == Type::kOpen ? answer->Text() : "no answer";
    }
    std::uint32_t Ask(Type type) {
        Say(Encode(type));
        const auto answer = Hear();
        return answer && answer->type == type ? answer->Number() : 77;
    }

private:
    os::FileDescriptor m_socket;
    gencp::Bytes m_received;
};

class LineServerTest : public testing::Test {
protected:
    LineServerTest() {
        const auto server = LineServer::Create(m_links.Path());
        m_port = server->Port();
        m_lender = ::fork();
        if (m_lender == 0)
            server->Run();
    }
    ~LineServerTest() override {
        ::kill(m_lender, SIGKILL);
        ::waitpid(m_lender, nullptr, 0);
    }

    Borrower& New() { return m_borrowers.emplace_back(m_port); }
    os::FileDescriptor Host(const std::string& name) const {
        return os::FileDescriptor(::open((m_links / name).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), "open");
    }
    static std::string Read(const os::FileDescriptor& host, std::size_t count) {
        std::string bytes(count, '.');
        EXPECT_EQ(::read(host.Get(), bytes.data(), count), static_cast<ssize_t>(count));
        return bytes;
    }

    test_support::TemporaryFolder m_links;
    std::uint16_t m_port = 0;
    pid_t m_lender = -1;
    std::list<Borrower> m_borrowers;
};

TEST_F(LineServerTest, LinksALineByItsNameInLowerCase) {
    EXPECT_EQ(New().Open("CAM0"), "");
    EXPECT_TRUE(fs::is_symlink(m_links / "cam0"));
}

TEST_F(LineServerTest, SaysWhyThereIsNoLine) {
    Borrower& borrower = New();
    EXPECT_EQ(borrower.Open(""), "'' names no line");
    EXPECT_EQ(borrower.Open("a/b"), "'a/b' names no line");
    EXPECT_EQ(borrower.Open(".Hidden"), "'.hidden' names no line");
    EXPECT_EQ(borrower.Open("cam0"), "");
}

TEST_F(LineServerTest, CarriesTheBytesOfEachToItsOwnHost) {
    const std::string names[] = {"a", "b", "c"};
    for (const std::string& name : names)
        ASSERT_EQ(New().Open(name), "");
    for (std::size_t index = 0; Borrower & borrower : m_borrowers) {
        const std::string& name = names[index++];
        const os::FileDescriptor host = Host(name);
        ASSERT_EQ(::write(host.Get(), name.data(), 1), 1);
        const auto heard = borrower.Hear();
        ASSERT_TRUE(heard);
        EXPECT_EQ(heard->type, Type::kBytes);
        EXPECT_EQ(heard->Text(), name);
        borrower.Say(EncodeText(Type::kBytes, "to " + name));
        EXPECT_EQ(Read(host, 4), "to " + name);
    }
}

TEST_F(LineServerTest, TellsTheHostsRateAndWhatItHasRead) {
    Borrower& borrower = New();
    ASSERT_EQ(borrower.Open("cam0"), "");
    const os::FileDescriptor host = Host("cam0");
    EXPECT_EQ(borrower.Ask(Type::kHostRate), 9600U);
    termios settings{};
    ::tcgetattr(host.Get(), &settings);
    ::cfsetspeed(&settings, B115200);
    ::tcsetattr(host.Get(), TCSANOW, &settings);
    EXPECT_EQ(borrower.Ask(Type::kHostRate), 115200U);
    EXPECT_EQ(borrower.Ask(Type::kIsRead), 1U);
    borrower.Say(EncodeText(Type::kBytes, "x"));
    EXPECT_EQ(borrower.Ask(Type::kIsRead), 0U);
    EXPECT_EQ(Read(host, 1), "x");
    EXPECT_EQ(borrower.Ask(Type::kIsRead), 1U);
}

TEST_F(LineServerTest, ClosesALineAndLendsAnother) {
    Borrower& borrower = New();
    ASSERT_EQ(borrower.Open("cam0"), "");
    EXPECT_EQ(borrower.Ask(Type::kClose), 0U);
    EXPECT_FALSE(fs::exists(fs::symlink_status(m_links / "cam0")));
    EXPECT_EQ(borrower.Open("cam1"), "");
    EXPECT_EQ(borrower.Open("cam2"), "");
    EXPECT_FALSE(fs::exists(fs::symlink_status(m_links / "cam1"))) << "the second takes the place of the first";
}

TEST_F(LineServerTest, HangsUpOnWhoAsksWithoutALineOrForNothingThatThereIs) {
    Borrower& good = New();
    ASSERT_EQ(good.Open("cam0"), "");
    for (const gencp::Bytes& said : {Encode(Type::kIsRead), Encode(static_cast<Type>(9)), gencp::Bytes(5, 0xFF)}) {
        Borrower& bad = New();
        bad.Say(said);
        EXPECT_FALSE(bad.Hear());
    }
    Borrower& stranger = New();
    ASSERT_EQ(stranger.Open("cam1"), "");
    stranger.Say(Encode(static_cast<Type>(9)));
    EXPECT_FALSE(stranger.Hear());
    EXPECT_EQ(good.Ask(Type::kIsRead), 1U);
}

TEST_F(LineServerTest, TakesALineBackWhenItsBorrowerGoes) {
    ASSERT_EQ(New().Open("cam0"), "");
    ASSERT_EQ(New().Open("cam1"), "");
    m_borrowers.pop_front();
    EXPECT_TRUE(test_support::WaitUntil([&] { return !fs::exists(fs::symlink_status(m_links / "cam0")); }));
    EXPECT_EQ(m_borrowers.back().Ask(Type::kIsRead), 1U);
}

}  // namespace
}  // namespace MarlowSim
