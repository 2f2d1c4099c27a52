/* SPDX-License-Identifier: Apache-2.0 */
#include "Connection.h"

#include <gtest/gtest.h>

#include "Connection.h"

#include "ConnectionFixture.h"
#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

TEST_F(ConnectionTest, NamesTheCameraAsItsRegistersDo) {
    EXPECT_EQ(OpenedAs(), "Marlow#Heron#H2048#2.0#21790042");
}

TEST_F(ConnectionTest, AnyMinorVersionOfGenCpOneIsSpoken) {
    for (const std::uint32_t version : {0x00010000u, 0x00010001u, 0x00010002u, 0x00010003u}) {
        camera.SetNumber(gencp::abrm::kGenCpVersion, version);
        EXPECT_EQ(OpenedAs(), "Marlow#Heron#H2048#2.0#21790042");
    }
}

TEST_F(ConnectionTest, OtherVersionsAreNoCamera) {
    for (const std::uint32_t version : {0x00000000u, 0x00020000u, 0xFFFFFFFFu}) {
        camera.SetNumber(gencp::abrm::kGenCpVersion, version);
        EXPECT_EQ(CodeOf([&] { OpenedAs(); }), CLProtocol::CLP_NO_DEVICE_FOUND);
    }
}

TEST_F(ConnectionTest, AnotherMakersCameraIsNotOurs) {
    camera.SetText(gencp::abrm::kManufacturerName, "Marlowe");
    EXPECT_EQ(CodeOf([&] { OpenedAs(); }), CLProtocol::CLP_NO_DEVICE_FOUND);
    EXPECT_EQ(TextOf([&] { OpenedAs(); }),
              "The camera 'Marlowe#Heron#H2048#2.0#21790042' answers at 9600 baud, not 'Marlow'.");
}

TEST_F(ConnectionTest, ModelIsTheFamilyOfACameraWithoutFamilyRegister) {
    camera.SetCapability(gencp::capability::kSbrm);
    EXPECT_EQ(OpenedAs(), "Marlow#H2048#H2048#2.0#21790042");
    camera.SetCapability(gencp::capability::kFamilyName);
    camera.SetText(gencp::abrm::kFamilyName, "");
    EXPECT_EQ(OpenedAs(), "Marlow#H2048#H2048#2.0#21790042");
}

TEST_F(ConnectionTest, EmptySerialNumberKeepsItsPlace) {
    camera.SetText(gencp::abrm::kSerialNumber, "");
    EXPECT_EQ(OpenedAs(), "Marlow#Heron#H2048#2.0#");
    EXPECT_EQ(OpenedAs("Marlow#Heron#H2048#"), "Marlow#Heron#H2048#2.0#");
    EXPECT_EQ(OpenedAs("Marlow#Heron#H2048#2.0#"), "Marlow#Heron#H2048#2.0#");
    camera.SetText(gencp::abrm::kDeviceVersion, "");
    EXPECT_EQ(OpenedAs(), "Marlow#Heron#H2048##");
}

TEST_F(ConnectionTest, FullRegistersAreReadToTheirEnd) {
    camera.SetText(gencp::abrm::kModelName, std::string(64, 'M'));
    camera.SetText(gencp::abrm::kSerialNumber, "1234567890123456");
    EXPECT_EQ(OpenedAs(), "Marlow#Heron#" + std::string(64, 'M') + "#2.0#1234567890123456");
}

TEST_F(ConnectionTest, SerialNumbersThatAreNoNamesComeBackAsTheyAre) {
    for (const char* number : {"007", "21-0042/A", "SN 4711 (b)", "\"x\",<&>", "50%", "\xC3\xA4\xE2\x82\xAC"}) {
        camera.SetText(gencp::abrm::kSerialNumber, number);
        const std::string id = OpenedAs();
        EXPECT_EQ(id, std::string("Marlow#Heron#H2048#2.0#") + number);
        EXPECT_EQ(OpenedAs(id), id);
        EXPECT_EQ(OpenedAs("d#l#" + id), id);
    }
}

TEST_F(ConnectionTest, NewFirmwareOfAKnownCameraShowsInItsName) {
    OpenedAs();
    camera.SetText(gencp::abrm::kDeviceVersion, "2.1");
    EXPECT_EQ(OpenedAs("Marlow#Heron#H2048#2.0#21790042"), "Marlow#Heron#H2048#2.1#21790042");
}

TEST_F(ConnectionTest, SeparatorsInNamesAreEscaped) {
    camera.SetText(gencp::abrm::kModelName, "H#20\t48");
    EXPECT_EQ(OpenedAs(), "Marlow#Heron#H%2320_48#2.0#21790042");
    EXPECT_EQ(OpenedAs("Marlow#Heron#H%2320_48#2.0#21790042"), "Marlow#Heron#H%2320_48#2.0#21790042");
}

TEST_F(ConnectionTest, WideNamesAreRead) {
    camera.SetCapability(gencp::capability::kEncodingUtf16 << gencp::capability::kEncodingShift);
    const auto wide = [](const std::string& text) {
        std::string result;
        for (const char sign : text)
            result += {'\0', sign};
        return result;
    };
    camera.SetText(gencp::abrm::kManufacturerName, wide("Marlow"));
    camera.SetText(gencp::abrm::kModelName, wide("H2048-long-name"));
    camera.SetText(gencp::abrm::kSerialNumber, wide("7"));
    camera.SetText(gencp::abrm::kDeviceVersion, wide("3"));
    EXPECT_EQ(OpenedAs(), "Marlow#H2048-long-name#H2048-long-name#3#7");
    EXPECT_EQ(OpenedAs("Marlow#H2048-long-name#H2048-long-name#3#7"), "Marlow#H2048-long-name#H2048-long-name#3#7");
}

TEST_F(ConnectionTest, AnyRequestThatFitsOpens) {
    for (const char* request :
         {"Marlow#Heron", "Marlow#Heron#H2048", "Marlow#Heron#H2048#21790042", "Marlow#Heron#H2048#2.0#21790042",
          "Marlow#Heron#H2048#1.9#21790042", "dir#libMarlowCLProtocol.so#Marlow#Heron#H2048#21790042",
          "dir#libMarlowCLProtocol.so#Marlow#Heron#H2048#2.0#21790042"})
        EXPECT_EQ(OpenedAs(request), "Marlow#Heron#H2048#2.0#21790042") << request;
}

TEST_F(ConnectionTest, AnotherCameraThanAskedForIsAFailure) {
    EXPECT_EQ(CodeOf([&] { OpenedAs("Marlow#Heron#H2048#999"); }), CLProtocol::CLP_NO_DEVICE_FOUND);
    OpenedAs();
    camera.SetText(gencp::abrm::kSerialNumber, "other");
    EXPECT_EQ(TextOf([&] { OpenedAs("Marlow#Heron#H2048#2.0#21790042"); }),
              "The camera 'Marlow#Heron#H2048#2.0#other' answers at 9600 baud, not 'Marlow#Heron#H2048#21790042'.");
}

TEST_F(ConnectionTest, ReadsAndWritesRegisters) {
    Open();
    EXPECT_TRUE(Write(kScratchAddress, {1, 2, 3, 4}));
    EXPECT_EQ(Read(kScratchAddress, 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(ConnectionTest, RangesBeyondTheLastAddressAreRefused) {
    Open();
    EXPECT_EQ(CodeOf([&] { Read(~std::uint64_t{0} - 2, 4); }), kBadRange);
    EXPECT_EQ(CodeOf([&] { Write(~std::uint64_t{0}, {1, 2}); }), kBadRange);
    EXPECT_EQ(CodeOf([&] { Read(~std::uint64_t{0} - 3, 4); }), kStatusCodes - 3) << "the last address is one";
}

TEST_F(ConnectionTest, CameraThatDiesAtAnyPacketOfAFetchIsGivenUpAndPutBackSoon) {
    const std::vector<std::uint8_t> file(8000, 'x');
    camera.SetFiles({{gencp::ManifestEntry{.versionMajor = 1, .schemaMajor = 1, .schemaMinor = 1}, file}});
    for (std::size_t last = 0; last < 4; ++last) {
        camera.commandFate = nullptr;
        camera.SetRate(0x01);
        Connection fresh(serial, clock, logger, known);
        fresh.Open(DeviceRequest("Marlow"), kTimeout, nullptr);
        const std::string id = fresh.XmlIds(serial, kTimeout).at(0);
        fresh.SetRate(serial, 0x80, kTimeout);
        Time died = clock.Now();
        camera.commandPackets = 0;
        camera.commandFate = [&, last](std::size_t i) {
            died = i <= last ? clock.Now() : died;
            return i < last ? Fate::kArrives : Fate::kLost;
        };
        gencp::Bytes buffer(file.size());
        EXPECT_EQ(CodeOf([&] { fresh.FetchDescription(serial, id, buffer, kTimeout); }), CL_ERR_TIMEOUT) << last;
        EXPECT_EQ(CodeOf([&] { fresh.SetRate(serial, 0x01, kTimeout); }), CL_ERR_TIMEOUT);
        EXPECT_LT(clock.Now() - died, milliseconds(1200)) << last;
    }
}

TEST_F(ConnectionTest, DescriptionIsFetchedByItsId) {
    gencp::ManifestEntry entry;
    entry.schemaMajor = entry.versionMajor = 1;
    camera.SetFiles({{entry, Bytes(5, 'x')}});
    Open();
    const auto ids = connection.XmlIds(serial, kTimeout);
    ASSERT_EQ(ids, std::vector<std::string>{"SchemaVersion.1.0@Marlow#Heron#H2048#2.0#21790042@XMLVersion.1.0.0"});
    EXPECT_EQ(connection.DescriptionSize(serial, ids[0], kTimeout), 5u);
    Bytes file(5);
    connection.FetchDescription(serial, ids[0], file, kTimeout);
    EXPECT_EQ(file, Bytes(5, 'x'));
    EXPECT_EQ(CodeOf([&] { connection.FetchDescription(serial, ids[0], std::span(file).first(4), kTimeout); }),
              CL_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(CodeOf([&] { connection.DescriptionSize(serial, "other", kTimeout); }),
              CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND);
}

TEST_F(ConnectionTest, CameraWithoutDescriptionIsAFailure) {
    Open();
    EXPECT_EQ(CodeOf([&] { connection.XmlIds(serial, kTimeout); }), CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND);
}

TEST_F(ConnectionTest, PendingWriteIsContinuedOrLeft) {
    Open();
    camera.pendingAcks = 1;
    camera.pendingMs = 600;
    EXPECT_EQ(CodeOf([&] { connection.ContinueWrite(serial, true, kTimeout); }), kNoWritePending);
    EXPECT_FALSE(Write(kScratchAddress, {1, 2, 3, 4}));
    EXPECT_TRUE(connection.ContinueWrite(serial, true, kTimeout));
    EXPECT_FALSE(Write(kScratchAddress, {5, 6, 7, 8}));
    EXPECT_TRUE(connection.ContinueWrite(serial, false, kTimeout));
    EXPECT_EQ(Read(kScratchAddress, 4), (Bytes{5, 6, 7, 8}));
}

TEST_F(ConnectionTest, AnyFateOfAnyPacketOfAProbeIsSurvived) {
    for (const Fate fate :
         {Fate::kLost, Fate::kHeaderDamaged, Fate::kDataDamaged, Fate::kCut, Fate::kTwice, Fate::kLate}) {
        for (std::size_t packet = 0; packet < 5; ++packet) {
            for (const bool isCommand : {true, false}) {
                const auto fates = [=](std::size_t i) { return i == packet ? fate : Fate::kArrives; };
                camera.commandPackets = camera.acknowledgePackets = 0;
                camera.commandFate = isCommand ? std::function<Fate(std::size_t)>(fates) : nullptr;
                camera.acknowledgeFate = isCommand ? nullptr : std::function<Fate(std::size_t)>(fates);
                known.Clear();
                EXPECT_EQ(OpenedAs(), "Marlow#Heron#H2048#2.0#21790042") << static_cast<int>(fate) << " of " << packet;
            }
        }
    }
}

TEST_F(ConnectionTest, LossyLineNeverGivesAWrongValueNorWritesTwice) {
    Open();
    connection.SetRate(serial, 0x80, kTimeout);
    const auto lossy = [state = 12345u](std::size_t) mutable {
        state = state * 1664525u + 1013904223u;
        const unsigned draw = (state >> 16) % 100;
        return draw < 2   ? Fate::kLost
               : draw < 3 ? Fate::kDataDamaged
               : draw < 4 ? Fate::kHeaderDamaged
               : draw < 5 ? Fate::kTwice
               : draw < 6 ? Fate::kLate
                          : Fate::kArrives;
    };
    camera.commandFate = camera.acknowledgeFate = lossy;
    camera.writes.clear();
    unsigned failures = 0;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        Bytes value(4);
        gencp::Store32(value, 0, i);
        const std::size_t before = camera.writes.size();
        try {
            Write(kScratchAddress, value);
            EXPECT_EQ(camera.writes.size(), before + 1);
            EXPECT_EQ(Read(kScratchAddress, 4), value);
        } catch (const DriverError&) {
            ++failures;
            EXPECT_LE(camera.writes.size(), before + 1);
        }
    }
    EXPECT_LE(failures, 2u);  // four attempts in a row must be lost
}

}  // namespace
