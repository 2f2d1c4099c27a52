/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the numbers of cameras
 */
#include "cameras/KnownCameras.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tools;
using testing::ElementsAre;
using testing::Pair;

CameraAddress Camera(const std::string& port, const std::string& serial, const std::string& model = "H2048") {
    return {port, "/drivers#Driver#Marlow#Heron#" + model + "#" + serial};
}

class CameraNumbers : public testing::Test {
protected:
    void Look(const std::vector<CameraAddress>& found, const std::set<std::string>& inUse = {}) {
        m_known.Remember(found, inUse, "2026-01-01T00:00:" + std::to_string(10 + m_looks++));
    }
    /// Number and port of each.
    std::vector<std::pair<std::size_t, std::string>> Numbers() const {
        std::vector<std::pair<std::size_t, std::string>> numbers;
        for (const KnownCamera& camera : m_known.All())
            numbers.emplace_back(camera.number, camera.address.portId);
        return numbers;
    }

    KnownCameras m_known;

private:
    int m_looks = 0;
};

TEST_F(CameraNumbers, BeginWithZeroInTheOrderOfTheLook) {
    Look({Camera("b", "1"), Camera("a", "2")});
    EXPECT_THAT(Numbers(), ElementsAre(Pair(0, "b"), Pair(1, "a")));
}

TEST_F(CameraNumbers, StayWhenAnotherCameraIsGone) {
    Look({Camera("a", "1"), Camera("b", "2")});
    Look({Camera("b", "2")});
    EXPECT_EQ(m_known.At(Camera("b", "2"))->number, 1U);
    EXPECT_EQ(m_known.At(Camera("a", "1"))->number, 0U);
}

TEST_F(CameraNumbers, OfNewCamerasAreThoseThatNobodyHas) {
    Look({Camera("a", "1"), Camera("b", "2")});
    Look({Camera("b", "2"), Camera("c", "3")});
    EXPECT_EQ(m_known.At(Camera("c", "3"))->number, 2U);
}

TEST_F(CameraNumbers, OfAnotherCameraAtTheSamePortIsAnotherOne) {
    Look({Camera("a", "1")});
    Look({Camera("a", "2")});
    EXPECT_EQ(m_known.At(Camera("a", "2"))->number, 1U);
    Look({Camera("a", "1")});
    EXPECT_EQ(m_known.At(Camera("a", "1"))->number, 0U);
}

TEST_F(CameraNumbers, GoAlongToAnotherPort) {
    Look({Camera("a", "1"), Camera("b", "2")});
    Look({Camera("b", "1"), Camera("a", "2")});
    EXPECT_THAT(Numbers(), ElementsAre(Pair(0, "b"), Pair(1, "a")));
}

TEST_F(CameraNumbers, OfACameraThatIsInUseAreNotGivenToItsTwin) {
    Look({Camera("a", "1")});
    Look({Camera("b", "1")}, {"a"});
    EXPECT_THAT(Numbers(), ElementsAre(Pair(0, "a"), Pair(1, "b")));
}

TEST_F(CameraNumbers, OfCamerasWithoutASerialNumberStayAtTheirPorts) {
    Look({Camera("a", "")});
    Look({Camera("b", "")});
    EXPECT_THAT(Numbers(), ElementsAre(Pair(0, "a"), Pair(1, "b")));
}

TEST_F(CameraNumbers, DoNotDependOnTheDriver) {
    Look({Camera("a", "1")});
    Look({{"a", "/elsewhere#Other#Marlow#Heron#H2048#1"}});
    EXPECT_THAT(Numbers(), ElementsAre(Pair(0, "a")));
    EXPECT_EQ(m_known.All().front().address.deviceId, "/elsewhere#Other#Marlow#Heron#H2048#1");
}

TEST_F(CameraNumbers, OfWhatWasAbsentLongestAreFreeOnceThereAreTooMany) {
    Look({Camera("a", "first")});
    for (int camera = 0; camera < 200; ++camera)
        Look({Camera("a", std::to_string(camera))});
    EXPECT_EQ(m_known.At(Camera("a", "first")), nullptr);
    EXPECT_LE(m_known.All().size(), 128U);
    EXPECT_LT(m_known.At(Camera("a", "199"))->number, 129U);
}

TEST_F(CameraNumbers, KeepTheRateAtWhichACameraRests) {
    Look({Camera("a", "1")});
    m_known.SetRestBaudRate(Camera("a", "1"), 115200);
    Look({Camera("b", "1")});
    EXPECT_EQ(m_known.At(Camera("b", "1"))->restBaudRate, 115200U);
}

TEST(KnownCameras, HaveEachNumberOnce) {
    KnownCameras known;
    EXPECT_TRUE(known.Add({3, Camera("a", "1"), "", 0}));
    EXPECT_FALSE(known.Add({3, Camera("b", "2"), "", 0}));
    ASSERT_EQ(known.All().size(), 1U);
    EXPECT_EQ(known.All().front().number, 3U);
}

}  // namespace
