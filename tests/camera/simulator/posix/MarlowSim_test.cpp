/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The program marlow-sim: its command line, its control socket, its end
 */

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "../../../support/TemporaryFolder.h"
#include "../Host.h"
#include "gencp/Registers.h"

namespace MarlowSimTest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// A run of the program with all its ends in the test's hands.
class Program {
public:
    explicit Program(std::vector<std::string> arguments) {
        int in[2], out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipes");
        arguments.insert(arguments.begin(), MARLOW_SIM_FILE);
        std::vector<char*> words;
        for (std::string& argument : arguments)
            words.push_back(argument.data());
        words.push_back(nullptr);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            ::dup2(out[1], STDERR_FILENO);
            ::execv(words[0], words.data());
            ::_exit(99);
        }
        ::close(in[0]);
        ::close(out[1]);
        m_input = in[1];
        m_output = out[0];
    }

    ~Program() {
        CloseInput();
        ::close(m_output);
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
    }

    std::string ReadLine() const {
        std::string line;
        char c = 0;
        pollfd file{m_output, POLLIN, 0};
        while (::poll(&file, 1, 20000) == 1 && ::read(m_output, &c, 1) == 1 && c != '\n')
            line.push_back(c);
        return line;
    }

    std::string ReadAll() const {
        std::string text;
        char c = 0;
        while (::read(m_output, &c, 1) == 1)
            text.push_back(c);
        return text;
    }

    void CloseInput() {
        if (m_input >= 0) {
            ::close(m_input);
            m_input = -1;
        }
    }

    void Signal(int number) const { ::kill(m_pid, number); }

    int ExitCode() {
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};

class Control {
public:
    explicit Control(const fs::path& path) : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        m_isConnected = ::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    }
    ~Control() { ::close(m_socket); }
    Control(const Control&) = delete;

    bool IsConnected() const { return m_isConnected; }

    void Send(const std::string& text) const {
        EXPECT_EQ(::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL), static_cast<ssize_t>(text.size()));
    }

    std::string Reply() const {
        std::string line;
        char c = 0;
        pollfd file{m_socket, POLLIN, 0};
        while (::poll(&file, 1, 20000) == 1 && ::read(m_socket, &c, 1) == 1 && c != '\n')
            line.push_back(c);
        return line;
    }

private:
    int m_socket;
    bool m_isConnected;
};

class MarlowSimTest : public testing::Test {
protected:
    std::string Links() const { return m_folder / "links"; }
    fs::path Socket() const { return m_folder / "control"; }

    test_support::TemporaryFolder m_folder;
};

TEST_F(MarlowSimTest, IsReadyWhenAllLinksAreThereAndRemovesThemInTheEnd) {
    Program program({"--links", Links(), "--camera", "cam0", "--camera", "cam1,model=H8192L"});
    EXPECT_EQ(program.ReadLine(), "ready");
    {
        Host host(fs::path(Links()) / "cam1");
        EXPECT_STREQ(reinterpret_cast<const char*>(host.Read(gencp::abrm::kModelName).data()), "H8192L");
    }
    program.Signal(SIGTERM);
    EXPECT_EQ(program.ExitCode(), 0);
    EXPECT_TRUE(fs::is_empty(Links()));
}

TEST_F(MarlowSimTest, EndsWithItsInputOnRequest) {
    Program program({"--links", Links(), "--camera", "cam0", "--until-stdin-closes"});
    EXPECT_EQ(program.ReadLine(), "ready");
    program.CloseInput();
    EXPECT_EQ(program.ExitCode(), 0);
    EXPECT_TRUE(fs::is_empty(Links()));
}

TEST_F(MarlowSimTest, ObeysSeveralClientsOfItsControlSocket) {
    Program program({"--links", Links(), "--camera", "cam0,serial=5", "--control", Socket().string()});
    EXPECT_EQ(program.ReadLine(), "ready");
    const Control one(Socket());
    const Control two(Socket());
    one.Send("unplug cam0\nlist\nplu");
    EXPECT_EQ(one.Reply(), "ok");
    EXPECT_EQ(one.Reply(), "ok cam0");
    two.Send("unplug cam1\n");
    EXPECT_THAT(two.Reply(), StartsWith("error "));
    one.Send("g cam0\n");
    EXPECT_EQ(one.Reply(), "ok");
    EXPECT_TRUE(fs::exists(fs::path(Links()) / "cam0"));
    program.Signal(SIGINT);
    EXPECT_EQ(program.ExitCode(), 0);
    EXPECT_FALSE(fs::exists(Socket()));
}

TEST_F(MarlowSimTest, DropsAClientThatFloodsIt) {
    Program program({"--links", Links(), "--camera", "cam0", "--control", Socket().string()});
    EXPECT_EQ(program.ReadLine(), "ready");
    const Control flood(Socket());
    flood.Send(std::string(6000, 'x'));
    EXPECT_EQ(flood.Reply(), "");
    const Control other(Socket());
    other.Send("list\n");
    EXPECT_EQ(other.Reply(), "ok cam0");
}

TEST_F(MarlowSimTest, TakesOverTheSocketOfOneThatWasKilledButOfNoOther) {
    Program killed({"--links", Links(), "--camera", "cam0", "--control", Socket().string()});
    EXPECT_EQ(killed.ReadLine(), "ready");
    Program second({"--links", Links() + "2", "--camera", "cam0", "--control", Socket().string()});
    EXPECT_THAT(second.ReadAll(), HasSubstr("in use"));
    EXPECT_EQ(second.ExitCode(), 1);
    killed.Signal(SIGKILL);
    EXPECT_EQ(killed.ExitCode(), -1);
    Program third({"--links", Links(), "--camera", "cam0", "--control", Socket().string()});
    EXPECT_EQ(third.ReadLine(), "ready");
}

TEST_F(MarlowSimTest, HelpsAndNamesEveryKeyAndCommand) {
    for (const auto& arguments : {std::vector<std::string>{"--help"}, std::vector<std::string>{}}) {
        Program program(arguments);
        const std::string text = program.ReadAll();
        EXPECT_EQ(program.ExitCode(), 0);
        for (const char* word : {"--links", "--camera", "--control", "drop-after=", "unplug NAME", "Example"})
            EXPECT_THAT(text, HasSubstr(word));
    }
}

TEST_F(MarlowSimTest, TellsWrongUsageFromFailure) {
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"--links", Links()},
                                               {"--camera", "cam0"},
                                               {"--links", Links(), "--camera", "cam0", "--nothing"},
                                               {"--links", Links(), "--camera", "cam0,model=H1"},
                                               {"--links", Links(), "--camera", "cam0", "--camera", "cam0"}}) {
        Program program(arguments);
        EXPECT_FALSE(program.ReadAll().empty());
        EXPECT_EQ(program.ExitCode(), 2);
    }
    Program failing({"--links", "/dev/null/links", "--camera", "cam0"});
    EXPECT_FALSE(failing.ReadAll().empty());
    EXPECT_EQ(failing.ExitCode(), 1);
}

}  // namespace
}  // namespace MarlowSimTest
