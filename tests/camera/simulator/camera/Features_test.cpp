/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The limits and dependencies of a camera's features
 */

#include "camera/Features.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <utility>

#include "gencp/Protocol.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {
namespace {

using gencp::Register;
using namespace registers;

constexpr std::uint16_t kOk = gencp::kStatusSuccess;
constexpr std::uint16_t kInvalid = gencp::kStatusInvalidParameter;

class Camera {
public:
    explicit Camera(const char* model) : m_features(FindModel(model), m_file, [] { return 365U; }) {
        m_features.PowerOn();
    }

    std::uint16_t Write(Register where, std::uint64_t value) {
        return m_file.Write(where.address, NumberBytes(value, where.length));
    }
    std::uint32_t Read(Register where) {
        gencp::Bytes bytes;
        EXPECT_EQ(m_file.Read(where.address, where.length, bytes), kOk);
        return gencp::Load32(bytes, 0);
    }
    void Restart() { m_features.PowerOn(); }

private:
    RegisterFile m_file;
    Features m_features;
};

TEST(Geometry, StartsWithTheWholeSensor) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Read(kWidth), 2048U);
    EXPECT_EQ(camera.Read(kHeight), 2048U);
    EXPECT_EQ(camera.Read(kPayloadSize), 2048U * 2048U);
}

TEST(Geometry, EnforcesLimitsAndSteps) {
    Camera camera("H2048");
    for (std::uint32_t good : {16U, 24U, 1024U, 2048U}) {
        EXPECT_EQ(camera.Write(kWidth, good), kOk) << good;
        EXPECT_EQ(camera.Read(kWidth), good);
    }
    for (std::uint32_t bad : {0U, 8U, 17U, 2049U, 2056U, 0xFFFFFFFFU})
        EXPECT_EQ(camera.Write(kWidth, bad), kInvalid) << bad;
    EXPECT_EQ(camera.Read(kWidth), 2048U);
}

TEST(Geometry, OffsetAndWidthShareTheSensor) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kOffsetX, 4), kInvalid);
    EXPECT_EQ(camera.Write(kWidth, 1024), kOk);
    EXPECT_EQ(camera.Write(kOffsetX, 1024), kOk);
    EXPECT_EQ(camera.Write(kOffsetX, 1028), kInvalid);
    EXPECT_EQ(camera.Write(kOffsetX, 2), kInvalid);
    EXPECT_EQ(camera.Write(kWidth, 1032), kInvalid);
}

TEST(Geometry, BinningShrinksTheImage) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kBinningHorizontal, 3), kOk);
    EXPECT_EQ(camera.Read(kWidthMax), 682U);
    EXPECT_EQ(camera.Read(kWidth), 680U);
    EXPECT_EQ(camera.Write(kBinningVertical, 2), kOk);
    EXPECT_EQ(camera.Read(kHeightMax), 1024U);
    EXPECT_EQ(camera.Read(kHeight), 1024U);
    EXPECT_EQ(camera.Write(kBinningVertical, 5), kInvalid);
    EXPECT_EQ(camera.Write(kBinningVertical, 0), kInvalid);
}

TEST(Geometry, ALineScanCameraHasLinesAsHeight) {
    Camera camera("H8192L");
    EXPECT_EQ(camera.Read(kSensorHeight), 1U);
    EXPECT_EQ(camera.Write(kHeight, 16384), kOk);
    EXPECT_EQ(camera.Write(kHeight, 16385), kInvalid);
    EXPECT_EQ(camera.Write(kOffsetY, 0), kInvalid);
    EXPECT_EQ(camera.Write(kBinningVertical, 2), kInvalid);
}

TEST(Format, DecidesPixelAndPayloadSize) {
    Camera camera("H4096");
    EXPECT_EQ(camera.Write(kPixelFormat, 0x02180014), kOk);
    EXPECT_EQ(camera.Read(kPixelSize), 24U);
    EXPECT_EQ(camera.Read(kPayloadSize), 4096U * 3072U * 3U);
    EXPECT_EQ(camera.Write(kPixelFormat, 0x0110000D), kOk);
    EXPECT_EQ(camera.Read(kPixelSize), 16U);
    EXPECT_EQ(camera.Write(kPixelFormat, 0x01100007), kInvalid) << "this model has no Mono16";
}

TEST(Exposure, FollowsTheAutomatic) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kExposureTime, 9), kInvalid);
    EXPECT_EQ(camera.Write(kExposureTime, 123), kOk);
    EXPECT_EQ(camera.Write(kExposureAuto, 1), kOk);
    EXPECT_EQ(camera.Read(kExposureAuto), 0U);
    EXPECT_EQ(camera.Read(kExposureTime), 80000U);
    EXPECT_EQ(camera.Write(kExposureAuto, 2), kOk);
    EXPECT_EQ(camera.Write(kExposureTime, 123), gencp::kStatusAccessDenied);
    EXPECT_EQ(camera.Write(kExposureAuto, 3), kInvalid);
}

TEST(FrameRate, IsLimitedByWhatIsSlowest) {
    Camera camera("H2048");
    const auto rate = [&camera] { return std::bit_cast<float>(camera.Read(kResultingFrameRate)); };
    EXPECT_EQ(camera.Write(kExposureTime, 10), kOk);
    EXPECT_FLOAT_EQ(rate(), 340.0F);
    EXPECT_EQ(camera.Write(kAcquisitionFrameRate, std::bit_cast<std::uint32_t>(50.0F)), kOk);
    EXPECT_EQ(camera.Write(kAcquisitionFrameRateEnable, 1), kOk);
    EXPECT_FLOAT_EQ(rate(), 50.0F);
    EXPECT_EQ(camera.Write(kAcquisitionFrameRate, std::bit_cast<std::uint32_t>(341.0F)), kInvalid);
    EXPECT_EQ(camera.Write(kAcquisitionFrameRate, 0x7FC00000), kInvalid) << "not a number";
}

TEST(Trigger, HasItsOwnSettingsForEachSelector) {
    Camera camera("H8192L");
    for (std::uint32_t trigger = 0; trigger < 3; ++trigger)
        EXPECT_EQ(camera.Write(kTriggerDelay.At(trigger * 16), trigger * 10), kOk);
    EXPECT_EQ(camera.Read(kTriggerDelay.At(32)), 20U);
    EXPECT_EQ(camera.Write(kTriggerSelector, 2), kOk);
    Camera area("H2048");
    EXPECT_EQ(area.Write(kTriggerSelector, 2), kInvalid);
}

TEST(Trigger, SoftwareTriggersAreCounted) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kTriggerSoftware, 1), kOk);
    EXPECT_EQ(camera.Write(kTriggerSoftware, 2), kInvalid);
    EXPECT_EQ(camera.Write(kTriggerMode.At(16), 1), kOk);
    EXPECT_EQ(camera.Write(kTriggerSoftware, 1), kOk);
    EXPECT_EQ(camera.Write(kTriggerSource.At(16), 1), kOk);
    EXPECT_EQ(camera.Write(kTriggerSoftware, 1), gencp::kStatusWrongConfiguration);
    EXPECT_EQ(camera.Read(kSoftwareTriggerCount), 2U);
}

TEST(Taps, TakeTheConfigurationAlong) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kClTapGeometry, 4), kOk);
    EXPECT_EQ(camera.Read(kClConfiguration), 2U);
    EXPECT_EQ(camera.Write(kClConfiguration, 3), kOk);
    EXPECT_EQ(camera.Read(kClTapGeometry), 5U);
    EXPECT_EQ(camera.Write(kClTapGeometry, 8), kInvalid);
    EXPECT_EQ(camera.Write(kClConfiguration, 4), kInvalid);
}

TEST(UserSets, KeepAndRestoreTheSettings) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kGainRaw, 55), kOk);
    EXPECT_EQ(camera.Write(kLUTValue.At(4 * 200), 7), kOk);
    EXPECT_EQ(camera.Write(kUserSetSelector, 1), kOk);
    EXPECT_EQ(camera.Write(kUserSetSave, 1), kOk);
    EXPECT_EQ(camera.Write(kUserSetSelector, 0), kOk);
    EXPECT_EQ(camera.Write(kUserSetLoad, 1), kOk);
    EXPECT_EQ(camera.Read(kGainRaw), 0U);
    EXPECT_EQ(camera.Read(kLUTValue.At(4 * 200)), 3200U);
    EXPECT_EQ(camera.Write(kUserSetDefault, 1), kOk);
    camera.Restart();
    EXPECT_EQ(camera.Read(kGainRaw), 55U);
    EXPECT_EQ(camera.Read(kLUTValue.At(4 * 200)), 7U);
}

TEST(UserSets, ThatOfTheFactoryIsNotWritten) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kUserSetSave, 1), gencp::kStatusWriteProtected);
    EXPECT_EQ(camera.Write(kUserSetSelector, 3), kInvalid);
}

TEST(Lines, StatusFollowsTheInverter) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Read(kLineStatus.At(16)), 0U);
    EXPECT_EQ(camera.Write(kLineInverter.At(16), 1), kOk);
    EXPECT_EQ(camera.Read(kLineStatus.At(16)), 1U);
    EXPECT_EQ(camera.Write(kLineSource, 1), kInvalid) << "an input gives no signal";
    EXPECT_EQ(camera.Write(kLineSource.At(32), 1), kOk);
}

TEST(Gamma, IsADouble) {
    Camera camera("H2048");
    EXPECT_EQ(camera.Write(kGamma, std::bit_cast<std::uint64_t>(0.45)), kOk);
    for (const double good : {0.25, 4.0})
        EXPECT_EQ(camera.Write(kGamma, std::bit_cast<std::uint64_t>(good)), kOk) << good;
    for (const double bad : {0.2, 4.5, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(camera.Write(kGamma, std::bit_cast<std::uint64_t>(bad)), kInvalid) << bad;
}

struct Numbers {
    Register where;
    std::uint32_t factory;
    std::uint32_t min;
    std::uint32_t max;
};

void ExpectRange(Camera& camera, const Numbers& numbers) {
    const std::uint64_t place = numbers.where.address;
    EXPECT_EQ(camera.Read(numbers.where), numbers.factory) << place;
    EXPECT_EQ(camera.Write(numbers.where, numbers.max + 1), kInvalid) << place;
    if (numbers.min > 0) {
        EXPECT_EQ(camera.Write(numbers.where, numbers.min - 1), kInvalid) << place;
    }
    EXPECT_EQ(camera.Write(numbers.where, numbers.min), kOk) << place;
    EXPECT_EQ(camera.Write(numbers.where, numbers.max), kOk) << place;
    EXPECT_EQ(camera.Read(numbers.where), numbers.max) << place;
}

TEST(Numbers, HaveTheirRangesAndWhatTheFactorySet) {
    Camera camera("H2048");
    const Numbers all[] = {{kTestPattern, 0, 0, 5},
                           {kImageFlags, 0, 0, 3},
                           {kLUTEnable, 0, 0, 1},
                           {kLUTIndex, 0, 0, 255},
                           {kLUTValue, 0, 0, 4095},
                           {kLUTValue.At(4 * 255), 4080, 0, 4095},
                           {kAcquisitionMode, 0, 0, 1},
                           {kAcquisitionFrameRateEnable, 0, 0, 1},
                           {kExposureMode, 0, 0, 1},
                           {kExposureTime, 50'000, 10, 10'000'000},
                           {kGainRaw, 0, 0, 240},
                           {kBlackLevelRaw, 16, 0, 255},
                           {kTriggerSelector, 1, 0, 1},
                           {kTriggerMode.At(16), 0, 0, 1},
                           {kTriggerSource.At(16), 0, 0, 6},
                           {kTriggerActivation.At(16), 0, 0, 4},
                           {kTriggerDelay.At(16), 0, 0, 10'000'000},
                           {kLineSelector, 0, 0, 3},
                           {kLineInverter, 0, 0, 1},
                           {kLineSource.At(32), 0, 0, 3},
                           {kClTapGeometry, 1, 0, 7},
                           {kUserSetSelector, 0, 0, 2},
                           {kUserSetDefault, 0, 0, 2},
                           {kBinningHorizontal, 1, 1, 4},
                           {kBinningVertical, 1, 1, 4}};
    for (const Numbers& numbers : all)
        ExpectRange(camera, numbers);
    Camera line("H8192L");
    for (const Numbers& numbers : {Numbers{kExposureAuto, 0, 0, 0}, Numbers{kTriggerSelector, 1, 0, 2},
                                   Numbers{kImageFlags, 0, 0, 1}, Numbers{kBinningVertical, 1, 1, 1}})
        ExpectRange(line, numbers);
}

TEST(Numbers, OfAModelAreReadOnly) {
    Camera camera("H2048");
    for (const auto& [where, value] :
         {std::pair{kDeviceScanType, 0U}, std::pair{kSensorWidth, 2048U}, std::pair{kSensorHeight, 2048U},
          std::pair{kWidthMax, 2048U}, std::pair{kHeightMax, 2048U}, std::pair{kDeviceTemperature, 365U},
          std::pair{kDeviceClockFrequency, 80'000'000U}, std::pair{kSoftwareTriggerCount, 0U}, std::pair{kLineMode, 0U},
          std::pair{kLineMode.At(16), 0U}, std::pair{kLineMode.At(32), 1U}}) {
        EXPECT_EQ(camera.Read(where), value) << where.address;
        EXPECT_NE(camera.Write(where, value), kOk) << where.address;
    }
    EXPECT_EQ(Camera("H8192L").Read(kDeviceScanType), 1U);
}

TEST(Commands, AreCarriedOutForOneOnly) {
    Camera camera("H2048");
    for (const Register& where : {kAcquisitionStart, kAcquisitionStop, kTriggerSoftware, kUserSetLoad}) {
        EXPECT_EQ(camera.Write(where, 1), kOk) << where.address;
        EXPECT_EQ(camera.Write(where, 0), kInvalid) << where.address;
        EXPECT_EQ(camera.Write(where, 2), kInvalid) << where.address;
    }
    EXPECT_EQ(camera.Write(kUserSetSave, 1), gencp::kStatusWriteProtected);
}

TEST(FrameRate, HasItsLimits) {
    Camera camera("H2048");
    const auto write = [&camera](Register where, float rate) {
        return camera.Write(where, std::bit_cast<std::uint32_t>(rate));
    };
    EXPECT_FLOAT_EQ(std::bit_cast<float>(camera.Read(kAcquisitionFrameRate)), 30.0F);
    for (const float good : {0.1F, 340.0F})
        EXPECT_EQ(write(kAcquisitionFrameRate, good), kOk) << good;
    EXPECT_EQ(write(kAcquisitionFrameRate, 0.09F), kInvalid);
    EXPECT_FLOAT_EQ(std::bit_cast<float>(camera.Read(kAcquisitionLineRate)), 340.0F);
    EXPECT_EQ(write(kAcquisitionLineRate, 100.0F), kOk);
    EXPECT_EQ(write(kAcquisitionLineRate, 99.0F), kInvalid);
}

TEST(Taps, HaveAGeometryForEachConfiguration) {
    Camera camera("H2048");
    const std::uint32_t configurations[] = {0, 0, 0, 1, 2, 3, 0, 0};
    for (std::uint32_t geometry = 0; geometry < 8; ++geometry) {
        EXPECT_EQ(camera.Write(kClTapGeometry, geometry), kOk);
        EXPECT_EQ(camera.Read(kClConfiguration), configurations[geometry]) << geometry;
    }
    EXPECT_EQ(camera.Write(kClConfiguration, 4), kInvalid);
    for (const auto& [configuration, geometry] :
         {std::pair{3U, 5U}, std::pair{2U, 4U}, std::pair{1U, 3U}, std::pair{0U, 2U}}) {
        EXPECT_EQ(camera.Write(kClConfiguration, configuration), kOk);
        EXPECT_EQ(camera.Read(kClTapGeometry), geometry) << configuration;
    }
    EXPECT_EQ(camera.Write(kClTapGeometry, 7), kOk);
    EXPECT_EQ(camera.Write(kClConfiguration, 0), kOk);
    EXPECT_EQ(camera.Read(kClTapGeometry), 7U) << "the configuration did not change";
}

}  // namespace
}  // namespace MarlowSim
