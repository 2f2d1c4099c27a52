/* SPDX-License-Identifier: Apache-2.0 */
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "LoadedDriver.h"
#include "VirtualLine.h"
#include "base/Sha1.h"
#include "clser/ClSerial.h"
#include "gencp/Memory.h"

namespace {

using namespace CLProtocol;
using namespace marlow::test;

constexpr CLUINT32 kTimeout = 400;
constexpr char kDeviceId[] = "Marlow#Heron#H2048#2.0#21790042";

std::string g_log;
std::atomic<int> g_logCalls{0};

void Log(CLINT32, const char* format, va_list arguments) {
    char buffer[500];
    std::vsnprintf(buffer, sizeof(buffer), format, arguments);
    g_log += buffer;
    ++g_logCalls;
}

class ThrowingLine final : public ISerial {
public:
    CLINT32 clSerialRead(CLINT8*, CLUINT32*, CLUINT32) override { throw std::runtime_error("from the line"); }
    CLINT32 clSerialWrite(CLINT8*, CLUINT32*, CLUINT32) override { throw 5; }
    CLINT32 clGetSupportedBaudRates(CLUINT32*) override { return CL_ERR_FUNCTION_NOT_FOUND; }
    CLINT32 clSetBaudRate(CLUINT32) override { throw std::bad_alloc(); }
};

struct ExportsTest : testing::Test {
    ExportsTest() { EXPECT_EQ(driver.initLib(nullptr, CLP_LOG_NOTSET), 0); }
    ~ExportsTest() override { EXPECT_EQ(driver.closeLib(), 0); }

    CLINT32 Probe(const char* request = "Marlow") {
        char id[200] = "";
        CLUINT32 size = sizeof(id);
        const CLINT32 code = driver.probe(&line, request, id, &size, &cookie, kTimeout);
        deviceId = id;
        return code;
    }
    std::string ErrorText(CLINT32 code, CLUINT32 of = 0) {
        char text[1000] = "";
        CLUINT32 size = sizeof(text);
        EXPECT_EQ(driver.errorText(code, text, &size, of), 0);
        EXPECT_EQ(size, std::string(text).size() + 1);
        return text;
    }
    CLINT32 Read(CLINT64 address, CLINT64 length) {
        buffer.assign(static_cast<std::size_t>(std::max<CLINT64>(length, 0)) + 1, 0);
        return driver.read(&line, cookie, address, buffer.data(), length, kTimeout);
    }

    LoadedDriver driver;
    VirtualClock clock;
    ModelCamera camera{clock};
    VirtualLine line{clock, camera};
    CLUINT32 cookie = 0;
    std::string deviceId;
    std::vector<char> buffer;
};

TEST_F(ExportsTest, VersionIsOneTwo) {
    CLUINT32 major = 0;
    CLUINT32 minor = 0;
    EXPECT_EQ(driver.version(&major, &minor), 0);
    EXPECT_EQ(major, 1u);
    EXPECT_EQ(minor, 2u);
    EXPECT_EQ(driver.version(nullptr, &minor), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.version(&major, nullptr), CL_ERR_INVALID_PTR);
}

TEST_F(ExportsTest, OnlyTemplateIsMarlow) {
    char text[7];
    CLUINT32 size = sizeof(text);
    EXPECT_EQ(driver.templates(text, &size), 0);
    EXPECT_STREQ(text, "Marlow");
    size = 6;
    EXPECT_EQ(driver.templates(text, &size), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 7u);
    EXPECT_EQ(driver.templates(nullptr, &size), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(driver.templates(text, nullptr), CL_ERR_INVALID_PTR);
}

TEST_F(ExportsTest, ProbeGivesDeviceIdAndCookie) {
    EXPECT_EQ(Probe(), 0);
    EXPECT_EQ(deviceId, kDeviceId);
    EXPECT_NE(cookie, 0u);
    EXPECT_EQ(driver.disconnect(cookie), 0);
    EXPECT_EQ(driver.disconnect(cookie), CLP_INVALID_COOKIE);
}

TEST_F(ExportsTest, ProbeWithADeviceIdOpensThatCamera) {
    EXPECT_EQ(Probe("x/y#libMarlowCLProtocol.so#Marlow#Heron#H2048#21790042"), 0);
    EXPECT_EQ(deviceId, kDeviceId);
    EXPECT_EQ(Probe("Marlow#Heron#H2048#1"), CLP_NO_DEVICE_FOUND);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(Probe(""), CLP_INVALID_DEVICEID);
    EXPECT_EQ(Probe("#\t\xFF%n%s"), CLP_INVALID_DEVICEID);
}

TEST_F(ExportsTest, ProbeIntoTooSmallABufferLeavesNoConnection) {
    char id[5];
    CLUINT32 size = sizeof(id);
    EXPECT_EQ(driver.probe(&line, "Marlow", id, &size, &cookie, kTimeout), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, sizeof(kDeviceId));
    EXPECT_EQ(cookie, 0u);
}

TEST_F(ExportsTest, NullPointersAreRefused) {
    char id[100];
    CLUINT32 size = sizeof(id);
    EXPECT_EQ(driver.probe(nullptr, "Marlow", id, &size, &cookie, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.probe(&line, nullptr, id, &size, &cookie, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.probe(&line, "Marlow", id, nullptr, &cookie, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.probe(&line, "Marlow", id, &size, nullptr, kTimeout), CL_ERR_INVALID_PTR);
    ASSERT_EQ(Probe(), 0);
    EXPECT_EQ(driver.read(nullptr, cookie, 0, id, 4, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.read(&line, cookie, 0, nullptr, 4, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.write(&line, cookie, 0, nullptr, 4, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.xmlIds(&line, cookie, id, nullptr, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.description(&line, cookie, nullptr, id, &size, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.digest(&line, cookie, nullptr, id, &size, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.digest(&line, cookie, "x", id, nullptr, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.digest(nullptr, cookie, "x", id, &size, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.getParam(&line, CLP_LOG_LEVEL, 0, nullptr, 4, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.setParam(&line, CLP_LOG_LEVEL, 0, nullptr, 4, kTimeout), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.errorText(-1, id, nullptr, 0), CL_ERR_INVALID_PTR);
    EXPECT_EQ(driver.eventData(cookie, id, nullptr), CL_ERR_INVALID_PTR);
}

TEST_F(ExportsTest, UnknownCookiesAreRefusedEverywhere) {
    char data[8];
    CLUINT32 size = sizeof(data);
    for (const CLUINT32 wrong : {0u, 77u, 0xFFFFFFFFu}) {
        EXPECT_EQ(driver.read(&line, wrong, 0, data, 4, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.write(&line, wrong, 0, data, 4, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.continueWrite(&line, wrong, 1, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.xmlIds(&line, wrong, data, &size, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.description(&line, wrong, "x", data, &size, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.digest(&line, wrong, "x", data, &size, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.disconnect(wrong), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.getParam(&line, CLP_DEVICE_BAUDERATE, wrong, data, 4, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.setParam(&line, CLP_DEVICE_BAUDERATE, wrong, data, 4, kTimeout), CLP_INVALID_COOKIE);
        EXPECT_EQ(driver.eventData(wrong, data, &size), CLP_INVALID_COOKIE);
    }
    EXPECT_EQ(line.reads, 0u);
}

TEST_F(ExportsTest, RegistersAreReadAndWritten) {
    ASSERT_EQ(Probe(), 0);
    const char value[] = {1, 2, 3, 4};
    EXPECT_EQ(driver.write(&line, cookie, kScratchAddress, value, 4, kTimeout), 0);
    EXPECT_EQ(Read(kScratchAddress, 4), 0);
    EXPECT_EQ(std::string(buffer.data(), 4), std::string(value, 4));
    EXPECT_EQ(Read(kScratchAddress, 0), 0);
    EXPECT_EQ(driver.read(&line, cookie, 0, nullptr, 0, kTimeout), 0);
}

TEST_F(ExportsTest, ImpossibleRangesAreRefused) {
    ASSERT_EQ(Probe(), 0);
    EXPECT_EQ(Read(0, -1), -30215);
    char data[8];
    EXPECT_EQ(driver.read(&line, cookie, 0, data, INT64_MAX, kTimeout), -30215);
    EXPECT_EQ(driver.read(&line, cookie, 0, data, INT64_MIN, kTimeout), -30215);
    EXPECT_EQ(driver.write(&line, cookie, 0, data, INT64_MAX, kTimeout), -30215);
    EXPECT_EQ(Read(-2, 4), -30215);
}

TEST_F(ExportsTest, RefusedAccessHasACodeAndAText) {
    ASSERT_EQ(Probe(), 0);
    EXPECT_EQ(Read(0x7000000, 4), -30103);
    EXPECT_EQ(ErrorText(-30103, cookie),
              "The camera refused reading 4 bytes at 0x7000000: invalid address (GenCP status 0x8003).");
    EXPECT_EQ(ErrorText(CLP_LAST_ERROR, cookie), ErrorText(-30103, cookie));
    EXPECT_EQ(ErrorText(-30103, cookie + 1), "The camera refused a command.");
}

TEST_F(ExportsTest, SilentLineNamesTheRatesTried) {
    camera.isSilent = true;
    char id[100];
    CLUINT32 size = sizeof(id);
    EXPECT_EQ(driver.probe(&line, "Marlow", id, &size, &cookie, 5), -30209);
    EXPECT_EQ(ErrorText(-30209),
              "No camera answers. Baud rates tried: 9600, 921600, 460800, 230400, 115200, 57600, 38400, 19200.");
    EXPECT_EQ(ErrorText(CLP_LAST_ERROR), ErrorText(-30209));
}

TEST_F(ExportsTest, ErrorTextsOfOthersAreNotFound) {
    char text[100];
    CLUINT32 size = sizeof(text);
    EXPECT_EQ(driver.errorText(CL_ERR_PORT_IN_USE, text, &size, 0), CL_ERR_ERROR_NOT_FOUND);
    EXPECT_EQ(driver.errorText(12345, text, &size, 0), CL_ERR_ERROR_NOT_FOUND);
    size = 3;
    EXPECT_EQ(driver.errorText(CLP_INVALID_COOKIE, text, &size, 0), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_GT(size, 3u);
    EXPECT_EQ(ErrorText(CLP_LAST_ERROR), "There was no error.");
}

TEST_F(ExportsTest, DescriptionIsGivenAsItLiesInTheCamera) {
    const gencp::Bytes file{'P', 'K', 0, 0, 7};
    gencp::ManifestEntry entry;
    entry.schemaMajor = entry.schemaMinor = entry.versionMajor = 1;
    entry.sha1 = base::Sha1(file);
    camera.SetFiles({{entry, file}});
    ASSERT_EQ(Probe(), 0);
    char ids[200];
    CLUINT32 size = sizeof(ids);
    ASSERT_EQ(driver.xmlIds(&line, cookie, ids, &size, kTimeout), 0);
    EXPECT_STREQ(ids, "SchemaVersion.1.1@Marlow#Heron#H2048#2.0#21790042@XMLVersion.1.0.0");
    size = 0;
    EXPECT_EQ(driver.description(&line, cookie, ids, nullptr, &size, kTimeout), 0);
    EXPECT_EQ(size, 5u);
    char data[10];
    size = 4;
    EXPECT_EQ(driver.description(&line, cookie, ids, data, &size, kTimeout), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 5u);
    size = sizeof(data);
    EXPECT_EQ(driver.description(&line, cookie, ids, data, &size, kTimeout), 0);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(gencp::Bytes(data, data + 5), file);
    EXPECT_EQ(driver.description(&line, cookie, "SchemaVersion.9.9@x@y", data, &size, kTimeout),
              CLP_NO_XMLDESCRIPTION_FOUND);
}

TEST_F(ExportsTest, DigestOfADescriptionIsTheManifestsOfNow) {
    gencp::ManifestEntry entry;
    entry.sha1 = base::Sha1(Bytes(3, 'x'));
    camera.SetFiles({{entry, Bytes(3, 'x')}});
    ASSERT_EQ(Probe(), 0);
    char ids[200] = "";
    CLUINT32 size = sizeof(ids);
    ASSERT_EQ(driver.xmlIds(&line, cookie, ids, &size, kTimeout), 0);
    char first[100] = "";
    size = sizeof(first);
    EXPECT_EQ(driver.digest(&line, cookie, ids, first, &size, kTimeout), 0);
    EXPECT_EQ(std::string(first).substr(0, 2), "3 ");
    entry.sha1 = base::Sha1(Bytes(3, 'y'));
    camera.SetFiles({{entry, Bytes(3, 'y')}});
    size = sizeof(ids);
    ASSERT_EQ(driver.xmlIds(&line, cookie, ids, &size, kTimeout), 0);
    char second[100] = "";
    size = sizeof(second);
    EXPECT_EQ(driver.digest(&line, cookie, ids, second, &size, kTimeout), 0);
    EXPECT_NE(std::string(first), std::string(second));
    EXPECT_EQ(driver.digest(&line, cookie, "SchemaVersion.9.9@x@y", second, &size, kTimeout),
              CLP_NO_XMLDESCRIPTION_FOUND);
}

TEST_F(ExportsTest, SeveralXmlIdsAreSeparatedByTabs) {
    gencp::ManifestEntry first;
    gencp::ManifestEntry second;
    second.versionSubMinor = 5;
    camera.SetFiles({{first, gencp::Bytes(3)}, {second, gencp::Bytes(3)}});
    ASSERT_EQ(Probe(), 0);
    char ids[200];
    CLUINT32 size = 10;
    EXPECT_EQ(driver.xmlIds(&line, cookie, ids, &size, kTimeout), CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(driver.xmlIds(&line, cookie, ids, &size, kTimeout), 0);
    EXPECT_STREQ(ids,
                 "SchemaVersion.0.0@Marlow#Heron#H2048#2.0#21790042@XMLVersion.0.0.0\t"
                 "SchemaVersion.0.0@Marlow#Heron#H2048#2.0#21790042@XMLVersion.0.0.5");
}

TEST_F(ExportsTest, BaudRateIsAParameter) {
    ASSERT_EQ(Probe(), 0);
    CLUINT32 value = 0;
    const auto bytes = reinterpret_cast<char*>(&value);
    EXPECT_EQ(driver.getParam(&line, CLP_DEVICE_SUPPORTED_BAUDERATES, cookie, bytes, 4, kTimeout), 0);
    EXPECT_EQ(value, 0xFFu);
    value = CL_BAUDRATE_115200;
    EXPECT_EQ(driver.setParam(&line, CLP_DEVICE_BAUDERATE, cookie, bytes, 4, kTimeout), 0);
    EXPECT_EQ(camera.Rate(), 0x10u);
    value = 0;
    EXPECT_EQ(driver.getParam(&line, CLP_DEVICE_BAUDERATE, cookie, bytes, 4, kTimeout), 0);
    EXPECT_EQ(value, 0x10u);
    value = 3;
    EXPECT_EQ(driver.setParam(&line, CLP_DEVICE_BAUDERATE, cookie, bytes, 4, kTimeout), CLP_PARAM_VALUE);
    EXPECT_EQ(driver.setParam(&line, CLP_DEVICE_SUPPORTED_BAUDERATES, cookie, bytes, 4, kTimeout), CLP_PARAM_READ_ONLY);
}

TEST_F(ExportsTest, ParametersHaveASize) {
    ASSERT_EQ(Probe(), 0);
    char bytes[16] = {};
    for (const auto param : {CLP_LOG_LEVEL, CLP_LOG_CALLBACK, CLP_STOP_PROBE_DEVICE, CLP_DEVICE_BAUDERATE,
                             CLP_DEVICE_SUPPORTED_BAUDERATES}) {
        EXPECT_EQ(driver.isParamSupported(param), 0);
        EXPECT_EQ(driver.getParam(&line, param, cookie, bytes, 3, kTimeout), CLP_PARAM_SIZE);
        if (param != CLP_DEVICE_SUPPORTED_BAUDERATES) {
            EXPECT_EQ(driver.setParam(&line, param, cookie, bytes, 3, kTimeout), CLP_PARAM_SIZE);
        }
    }
}

TEST_F(ExportsTest, UnknownParametersAreRefused) {
    char bytes[4] = {};
    for (const int number : {0, 4, -3, 1000}) {
        const auto param = static_cast<CLP_PARAMS>(number);
        EXPECT_EQ(driver.isParamSupported(param), CLP_PARAM_NOT_SUPPORTED);
        EXPECT_EQ(driver.getParam(nullptr, param, 0, bytes, 4, 0), CLP_PARAM_NOT_SUPPORTED);
        EXPECT_EQ(driver.setParam(nullptr, param, 0, bytes, 4, 0), CLP_PARAM_NOT_SUPPORTED);
    }
}

TEST_F(ExportsTest, LogLevelAndCallbackAreParameters) {
    g_log.clear();
    CLP_LOGGER logger = Log;
    EXPECT_EQ(driver.setParam(nullptr, CLP_LOG_CALLBACK, 0, reinterpret_cast<char*>(&logger), sizeof(logger), 0), 0);
    CLINT32 level = CLP_LOG_INFO;
    EXPECT_EQ(driver.setParam(nullptr, CLP_LOG_LEVEL, 0, reinterpret_cast<char*>(&level), 4, 0), 0);
    ASSERT_EQ(Probe(), 0);
    EXPECT_NE(g_log.find("Found camera 'Marlow#Heron#H2048#2.0#21790042' at 9600 baud"), std::string::npos);
    EXPECT_EQ(driver.getParam(nullptr, CLP_LOG_LEVEL, 0, reinterpret_cast<char*>(&level), 4, 0), 0);
    EXPECT_EQ(level, CLP_LOG_INFO);
}

TEST_F(ExportsTest, CloseEndsLoggingAndConnections) {
    ASSERT_EQ(driver.initLib(Log, CLP_LOG_NOTSET), 0);
    ASSERT_EQ(Probe(), 0);
    ASSERT_EQ(driver.closeLib(), 0);
    const int calls = g_logCalls;
    EXPECT_EQ(Read(0, 4), CLP_INVALID_COOKIE);
    EXPECT_EQ(g_logCalls, calls);
}

TEST_F(ExportsTest, StopEndsProbesOfOtherThreads) {
    camera.isSilent = true;
    std::atomic<bool> isProbing{false};
    line.onRead = [&](CLUINT32 timeoutMs) { isProbing = isProbing || timeoutMs > 0; };
    CLINT32 code = 0;
    std::thread thread([&] { code = Probe(); });
    while (!isProbing)
        std::this_thread::yield();
    const CLUINT32 stop = 1;
    EXPECT_EQ(driver.setParam(nullptr, CLP_STOP_PROBE_DEVICE, 0, reinterpret_cast<const char*>(&stop), 4, 0), 0);
    thread.join();
    EXPECT_EQ(code, -30219);
}

TEST_F(ExportsTest, PendingWriteIsContinuedOrLeft) {
    ASSERT_EQ(Probe(), 0);
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(gencp::kPendingAck, 0, command.header.requestId,
                                       gencp::EncodePendingAck(10'000));
    };
    const char value[] = {1, 2, 3, 4};
    EXPECT_EQ(driver.write(&line, cookie, kScratchAddress, value, 4, 20), CLP_PENDING_WRITE);
    EXPECT_EQ(driver.continueWrite(&line, cookie, 1, 20), CLP_PENDING_WRITE);
    EXPECT_EQ(Read(0, 4), -30212);
    EXPECT_EQ(driver.continueWrite(&line, cookie, 0, 20), 0);
    EXPECT_EQ(driver.continueWrite(&line, cookie, 1, 20), -30213);
}

TEST_F(ExportsTest, ThereAreNoEvents) {
    ASSERT_EQ(Probe(), 0);
    char data[8];
    CLUINT32 size = sizeof(data);
    EXPECT_EQ(driver.eventData(cookie, data, &size), 0);
    EXPECT_EQ(size, 0u);
}

TEST_F(ExportsTest, ExceptionsOfTheLineAreStopped) {
    ThrowingLine throwing;
    char id[100];
    CLUINT32 size = sizeof(id);
    EXPECT_EQ(driver.probe(&throwing, "Marlow", id, &size, &cookie, kTimeout), -30299);
    EXPECT_EQ(ErrorText(CLP_LAST_ERROR), "from the line");
}

}  // namespace
