/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of fetching descriptions
 */

#include "XmlFetch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "CLProtocol/CLPort.h"
#include "archives/Archives.h"
#include "os/File.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;
using CLProtocol::CLErrException;

constexpr char kCamera[] = "Marlow#Heron#H2048#1";
constexpr char kId[] = "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.2.0";
constexpr char kXml[] = "<RegisterDescription ModelName=\"H2048\"/>";

class Description : public testing::Test {
public:
    Description() {
        scripted::Serial().SetPorts(1, {kCamera});
        driver.xmlIds = kId;
        driver.xml = {{kId, kXml}};
        port.Connect("Scripted#Port0", scripted::FullDeviceId(kCamera));
    }
    ~Description() noexcept override {}

protected:
    std::int32_t CodeOfFetching(bool useCache = true) {
        try {
            port.GetXML(useCache);
        } catch (const CLErrException& error) {
            return error.GetErrorCode();
        }
        return 0;
    }

    std::string TextOfFetching() {
        try {
            port.GetXML(true);
        } catch (const GenICam::RuntimeException& error) {
            return error.GetDescription();
        }
        return {};
    }

    std::size_t Fetches() { return driver.CountCalls("clpGetXMLDescription"); }

    scripted::Environment environment;
    scripted::DriverScript& driver = scripted::Driver();
    CCLPort port;
};

TEST_F(Description, ComesFromTheCamera) {
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(Fetches(), 2u);
    EXPECT_TRUE(os::ListFiles(environment.Cache().Path()).empty());
}

TEST_F(Description, IsFetchedOnceWithTheCache) {
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 1u);
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(Fetches(), 2u);
}

TEST_F(Description, IsFetchedAgainForAnotherId) {
    port.GetXML(true);
    const std::string newer = "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.3.0";
    driver.xmlIds = newer;
    driver.xml = {{newer, "<New/>"}};
    EXPECT_EQ(port.GetXML(true), "<New/>");
}

TEST_F(Description, IsFetchedAgainWhenTheCacheIsDamaged) {
    port.GetXML(true);
    const auto names = os::ListFiles(environment.Cache().Path());
    ASSERT_EQ(names.size(), 1u);
    environment.Cache().Write(names[0], "damaged");
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 2u);
}

TEST_F(Description, DoesWithoutACacheThatCannotBeWritten) {
    environment.Cache().Write("file", "");
    const scripted::ScopedVariable cache("GENICAM_CACHE", environment.Cache() / "file/below");
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 2u);
}

TEST_F(Description, IsTheBestThatTheCameraOffers) {
    const std::string best = "SchemaVersion.1.1@Marlow#Heron#H2048@XMLVersion.1.0.0";
    driver.xmlIds = std::string(kId) + "\tnonsense\tSchemaVersion.2.0@Marlow@XMLVersion.9.0.0\t" + best +
                    "\tSchemaVersion.1.1@Other@XMLVersion.9.0.0\t";
    driver.xml[best] = "<Best/>";
    EXPECT_EQ(port.GetXML(true), "<Best/>");
    GenICam::gcstring_vector ids;
    port.GetXMLIDs(ids);
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(ids[0], best);
    EXPECT_EQ(ids[1], kId);
}

TEST_F(Description, OfAFullDeviceIdIsFetched) {
    const std::string full = "SchemaVersion.1.1@" + scripted::FullDeviceId(kCamera) + "@XMLVersion.1.2.0";
    driver.xmlIds = full;
    driver.xml = {{full, kXml}};
    EXPECT_EQ(port.GetXML(true), kXml);
}

TEST_F(Description, IsUnpacked) {
    const std::string archive = MakeZip({{"camera.xml", kXml}});
    driver.onGetXml = [&](const char*, char* buffer, std::uint32_t* size) {
        std::memcpy(buffer, archive.data(), archive.size());
        *size = static_cast<std::uint32_t>(archive.size());
        return 0;
    };
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 1u);
}

TEST_F(Description, ThatCannotBeUnpackedIsAnErrorAndNotKept) {
    driver.xml[kId] = "PK\x03\x04 broken";
    EXPECT_THROW(port.GetXML(true), GenICam::RuntimeException);
    EXPECT_TRUE(os::ListFiles(environment.Cache().Path()).empty());
    driver.xml[kId] = kXml;
    EXPECT_EQ(port.GetXML(true), kXml);
}

TEST_F(Description, ThatCannotBeUnpackedNamesPortIdAndDriver) {
    driver.xml[kId] = "PK\x03\x04 broken";
    EXPECT_THAT(TextOfFetching(),
                testing::StartsWith("Port 'Scripted#Port0': description '" + std::string(kId) + "' of '" +
                                    scripted::DriverPath() + "' is of no use: Could not unpack the description: "));
}

TEST_F(Description, ThatIsEmptyIsAnErrorAndNotKept) {
    for (const std::string& xml : {std::string(), std::string(1000, '\0')}) {
        driver.onGetXml = [&](const char*, char* buffer, std::uint32_t* size) {
            std::memcpy(buffer, xml.data(), xml.size());
            *size = static_cast<std::uint32_t>(xml.size());
            return 0;
        };
        EXPECT_EQ(TextOfFetching(), "Port 'Scripted#Port0': description '" + std::string(kId) + "' of '" +
                                        scripted::DriverPath() + "' is of no use: it is empty");
    }
    driver.onGetXml = nullptr;
    EXPECT_EQ(port.GetXML(true), kXml);
}

TEST_F(Description, ThatIsCutShortIsNotKept) {
    driver.xml[kId] = "<RegisterDescription ModelName=";
    EXPECT_EQ(port.GetXML(true), driver.xml[kId]);
    driver.xml[kId] = kXml;
    EXPECT_EQ(port.GetXML(true), kXml);
}

TEST_F(Description, ThatChangedWithoutANewVersionIsFetchedAgain) {
    driver.digests[kId] = "40 aa";
    EXPECT_EQ(port.GetXML(true), kXml);
    driver.xml[kId] = "<Other/>";
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 1u);
    driver.digests[kId] = "40 ab";
    EXPECT_EQ(port.GetXML(true), "<Other/>");
    driver.digests[kId] = "40 aa";
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 2u);
}

TEST_F(Description, OfWhichTheCameraHasNoSumIsFetchedEachTime) {
    driver.digests[kId] = "";
    EXPECT_EQ(port.GetXML(true), kXml);
    driver.xml[kId] = "<Other/>";
    EXPECT_EQ(port.GetXML(true), "<Other/>");
    EXPECT_TRUE(os::ListFiles(environment.Cache().Path()).empty());
}

TEST_F(Description, OfADriverThatKnowsNoSumsIsKnownByItsId) {
    EXPECT_EQ(port.GetXML(true), kXml);
    driver.xml[kId] = "<Other/>";
    EXPECT_EQ(port.GetXML(true), kXml);
    EXPECT_EQ(Fetches(), 1u);
}

TEST_F(Description, IsFetchedAtTheHighestRateThatTheLineCarries) {
    driver.onSetRate = [](std::uint32_t rate) { return rate > 0x10 ? -30214 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x10, 0x01}));
}

TEST_F(Description, IsFetchedAtThePresentRateWhereTheCameraRefusesToChange) {
    int asked = 0;
    driver.onSetRate = [&](std::uint32_t rate) { return rate != 0x01 && ++asked > 0 ? -30106 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(asked, 1);
}

TEST_F(Description, MayBeLong) {
    driver.xml[kId] = "<a>" + std::string(3u << 20, 'x') + "</a>";
    EXPECT_EQ(port.GetXML(true), driver.xml[kId]);
    EXPECT_EQ(port.GetXML(true), driver.xml[kId]);
}

TEST_F(Description, OfNonsenseSizeIsAnError) {
    driver.onGetXml = [](const char*, char*, std::uint32_t* size) {
        *size = 0xfffffff0;
        return -10001;
    };
    EXPECT_THROW(port.GetXML(true), GenICam::InvalidArgumentException);
    driver.onGetXml = [](const char*, char*, std::uint32_t* size) {
        *size += 1;
        return -10001;
    };
    EXPECT_THROW(port.GetXML(true), GenICam::InvalidArgumentException);
    driver.onGetXml = [](const char*, char* buffer, std::uint32_t* size) {
        std::memset(buffer, 'x', *size);
        *size = 0xffffffff;
        return 0;
    };
    EXPECT_EQ(port.GetXML(false).size(), 1u << 20);
}

TEST_F(Description, IsMissing) {
    driver.xmlIds = "";
    EXPECT_THROW(port.GetXML(true), GenICam::AccessException);
    driver.onGetXmlIds = [](char*, std::uint32_t*) { return -20102; };
    EXPECT_THROW(port.GetXML(true), GenICam::AccessException);
    driver.onGetXmlIds = [](char*, std::uint32_t*) { return -30001; };
    EXPECT_EQ(CodeOfFetching(), -30001);
    driver.onGetXmlIds = [](char*, std::uint32_t*) -> std::int32_t { throw 1; };
    EXPECT_THROW(port.GetXML(true), GenICam::RuntimeException);
}

TEST_F(Description, IsFetchedAtTheHighestCommonRate) {
    scripted::Serial().supportedRates = 0x1f;
    driver.supportedRates = 0x3b;
    driver.onGetXml = [&](const char*, char* buffer, std::uint32_t* size) {
        EXPECT_EQ(driver.rate, 0x10u);
        std::memcpy(buffer, kXml, sizeof kXml);
        *size = sizeof kXml;
        return 0;
    };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x10, 0x01}));
}

TEST_F(Description, GetsTheRateBackAfterAFailure) {
    driver.onGetXml = [](const char*, char*, std::uint32_t*) { return -10004; };
    EXPECT_EQ(CodeOfFetching(), -10004);
    driver.onGetXml = [](const char*, char*, std::uint32_t*) -> std::int32_t { throw 1; };
    EXPECT_THROW(port.GetXML(true), GenICam::RuntimeException);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x80, 0x01, 0x80, 0x01}));
}

TEST_F(Description, IsFetchedAtTheHighestRateWhereTheDriverHasARemark) {
    driver.supportedRemark = 30001;
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x80, 0x01}));
}

TEST_F(Description, IsFetchedAtThePresentRateWhereItCannotBeChanged) {
    driver.supportedRates = 0;
    EXPECT_EQ(port.GetXML(false), kXml);
    driver.supportedRates = 0x40000000;  // "the fastest" is no rate
    EXPECT_EQ(port.GetXML(false), kXml);
    driver.supportedRates = 0xff;
    driver.rate = 0x80;
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_TRUE(driver.rates.empty());
    driver.rate = 0x01;
    driver.onSetRate = [](std::uint32_t rate) { return rate != 0x01 ? -10008 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x01}));
}

TEST_F(Description, IsTheResultEvenIfTheRateCannotBePutBack) {
    driver.onSetRate = [](std::uint32_t rate) { return rate == 0x01 ? -10004 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
}

TEST_F(Description, GetsTheRateBackFromADriverThatNeedsSomeAttempts) {
    int failures = 2;
    driver.onSetRate = [&](std::uint32_t rate) { return rate == 0x01 && failures-- > 0 ? -10004 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x80, 0x01}));
}

TEST_F(Description, IsFetchedAtThePresentRateWhenTheCameraWasLostByTheChangeAndFoundAgain) {
    driver.onSetRate = [](std::uint32_t rate) { return rate != 0x01 ? -10004 : 0; };
    EXPECT_EQ(port.GetXML(false), kXml);
    EXPECT_EQ(driver.rates, (std::vector<std::uint32_t>{0x01}));
}

TEST_F(Description, IsNotAskedForWhenTheCameraWasLostByTheChange) {
    driver.onSetRate = [](std::uint32_t) { return -10004; };
    EXPECT_EQ(CodeOfFetching(), -10004);
    EXPECT_EQ(Fetches(), 0u);
}

TEST_F(Description, FromTheCacheLeavesTheRateAlone) {
    port.GetXML(true);
    driver.rates.clear();
    port.GetXML(true);
    EXPECT_TRUE(driver.rates.empty());
}

}  // namespace
