/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features of a camera behind its registers: limits, what depends on what, user sets
 */

#include "camera/Features.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "gencp/Protocol.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {

namespace {

using gencp::Bytes;
using gencp::ByteView;
using gencp::Register;
using namespace registers;

constexpr std::uint16_t kOk = gencp::kStatusSuccess;
constexpr std::uint16_t kInvalid = gencp::kStatusInvalidParameter;

constexpr std::uint32_t kAutoOnce = 1;
constexpr std::uint32_t kAutoContinuous = 2;
constexpr std::uint32_t kTriggerModeOn = 1;
constexpr std::uint32_t kSourceSoftware = 0;
constexpr std::uint32_t kFrameStart = 1;
constexpr std::uint32_t kLineStart = 2;

/// The number of taps of each geometry, by its value.
constexpr std::array<std::uint32_t, 8> kTaps{1, 2, 3, 4, 8, 10, 2, 2};

std::uint16_t Check(bool isGood) {
    return isGood ? kOk : kInvalid;
}

Register InGroup(Register first, std::uint32_t group) {
    return first.At(std::uint64_t{group} * kGroupStride);
}

Bytes FloatBytes(float value) {
    return NumberBytes(std::bit_cast<std::uint32_t>(value), 4);
}

std::uint32_t ConfigurationOf(std::uint32_t taps) {
    return taps <= 3 ? 0 : taps == 4 ? 1 : taps == 8 ? 2 : 3;
}

}  // namespace

Features::Features(const CameraModel& model, RegisterFile& file, std::function<std::uint32_t()> temperature)
    : m_model(model), m_file(file) {
    AddInformation();
    m_file.AddNumber(kDeviceTemperature, Access::kRead, 0);
    m_file.OnRead(kDeviceTemperature, [temperature] { return NumberBytes(temperature(), 4); });
    AddGeometry();
    AddFormat();
    AddAcquisition();
    AddTriggers();
    AddLines();
    AddAnalog();
    AddTransport();
    AddUserSets();
}

void Features::AddSetting(Register where, Bytes factory) {
    m_file.Add(where, Access::kReadWrite, std::move(factory));
    m_settings.push_back(where);
}

void Features::AddNumber(Register where, std::uint32_t factory, std::uint32_t min, std::uint32_t max,
                         std::uint32_t inc) {
    AddSetting(where, NumberBytes(factory, where.length));
    m_file.OnWrite(where, [min, max, inc](ByteView value) {
        const std::uint32_t number = gencp::Load32(value, 0);
        return Check(number >= min && number <= max && (number - min) % inc == 0);
    });
}

void Features::AddChoice(Register where, std::uint32_t factory, std::set<std::uint32_t> choices) {
    AddSetting(where, NumberBytes(factory, where.length));
    m_file.OnWrite(where, [choices = std::move(choices)](ByteView value) {
        return Check(choices.contains(gencp::Load32(value, 0)));
    });
}

void Features::AddFloat(Register where, float factory, float min, float max) {
    AddSetting(where, FloatBytes(factory));
    m_file.OnWrite(where, [min, max](ByteView value) {
        const float number = std::bit_cast<float>(gencp::Load32(value, 0));
        return Check(number >= min && number <= max);
    });
}

void Features::AddCommand(Register where, std::function<std::uint16_t()> action) {
    m_file.AddNumber(where, Access::kWrite, 0);
    m_file.OnWrite(where, [action = std::move(action)](ByteView value) {
        return gencp::Load32(value, 0) == 1 ? action() : kInvalid;
    });
}

void Features::AddInformation() {
    m_file.AddText(kFirmwareVersion, Access::kRead, "1.4.2");
    m_file.AddNumber(kDeviceScanType, Access::kRead, m_model.isLineScan ? 1 : 0);
    m_file.AddNumber(kSensorWidth, Access::kRead, m_model.sensorWidth);
    m_file.AddNumber(kSensorHeight, Access::kRead, m_model.sensorHeight);
    m_file.AddNumber(kDeviceClockFrequency, Access::kRead, m_model.clockFrequency);
}

std::uint32_t Features::WidthMax() const {
    return m_model.sensorWidth / m_file.Number(kBinningHorizontal);
}

std::uint32_t Features::HeightMax() const {
    return m_model.heightMax / m_file.Number(kBinningVertical);
}

/// A size and an offset of a window together may not reach over the edge of the sensor.
std::uint16_t Features::ChangeWindow(Register size, Register offset, ByteView value, bool isSize) {
    const bool isHorizontal = size.address == kWidth.address;
    const std::uint32_t max = isHorizontal ? WidthMax() : HeightMax();
    const std::uint32_t min = isHorizontal ? m_model.widthMin : m_model.heightMin;
    const std::uint32_t sizeInc = isHorizontal ? m_model.widthInc : m_model.heightInc;
    const std::uint32_t offsetInc = isHorizontal ? m_model.offsetXInc : m_model.offsetYInc;
    const std::uint32_t number = gencp::Load32(value, 0);
    if (isSize)
        return Check(number >= min && number <= max - m_file.Number(offset) && (number - min) % sizeInc == 0);
    return Check(number <= max - m_file.Number(size) && number % offsetInc == 0);
}

/// After a change of the binning the window is the largest one that fits, at the edge.
void Features::FitWindow(Register size, Register offset, std::uint32_t max, std::uint32_t inc) const {
    m_file.SetNumber(offset, 0);
    m_file.SetNumber(size, std::min(m_file.Number(size), max / inc * inc));
}

void Features::AddGeometry() {
    AddSetting(kBinningHorizontal, NumberBytes(1, 4));
    AddSetting(kBinningVertical, NumberBytes(1, 4));
    AddSetting(kWidth, NumberBytes(m_model.sensorWidth, 4));
    AddSetting(kHeight, NumberBytes(m_model.isLineScan ? 1024 : m_model.sensorHeight, 4));
    AddSetting(kOffsetX, NumberBytes(0, 4));
    AddSetting(kOffsetY, NumberBytes(0, 4));
    m_file.AddNumber(kWidthMax, Access::kRead, 0);
    m_file.AddNumber(kHeightMax, Access::kRead, 0);
    m_file.OnRead(kWidthMax, [this] { return NumberBytes(WidthMax(), 4); });
    m_file.OnRead(kHeightMax, [this] { return NumberBytes(HeightMax(), 4); });
    m_file.OnWrite(kWidth, [this](ByteView value) { return ChangeWindow(kWidth, kOffsetX, value, true); });
    m_file.OnWrite(kHeight, [this](ByteView value) { return ChangeWindow(kHeight, kOffsetY, value, true); });
    m_file.OnWrite(kOffsetX, [this](ByteView value) { return ChangeWindow(kWidth, kOffsetX, value, false); });
    m_file.OnWrite(kOffsetY, [this](ByteView value) {
        return m_model.isLineScan ? kInvalid : ChangeWindow(kHeight, kOffsetY, value, false);
    });
    const auto bin = [this](Register binning, Register size, Register offset, std::uint32_t sensor, std::uint32_t inc,
                            std::uint32_t max) {
        m_file.OnWrite(binning, [=, this](ByteView value) {
            const std::uint32_t factor = gencp::Load32(value, 0);
            if (factor < 1 || factor > max)
                return kInvalid;
            if (factor != m_file.Number(binning))
                FitWindow(size, offset, sensor / factor, inc);
            return kOk;
        });
    };
    bin(kBinningHorizontal, kWidth, kOffsetX, m_model.sensorWidth, m_model.widthInc, m_model.binningMax);
    bin(kBinningVertical, kHeight, kOffsetY, m_model.heightMax, m_model.heightInc,
        m_model.isLineScan ? 1 : m_model.binningMax);
    AddNumber(kImageFlags, 0, 0, m_model.isLineScan ? 1 : 3);
}

std::uint32_t Features::PixelBits() const {
    return PixelFormat{"", m_file.Number(kPixelFormat)}.Bits();
}

void Features::AddFormat() {
    std::set<std::uint32_t> formats;
    for (const PixelFormat& format : m_model.formats)
        formats.insert(format.value);
    AddChoice(kPixelFormat, m_model.formats[0].value, std::move(formats));
    m_file.AddNumber(kPixelSize, Access::kRead, 0);
    m_file.OnRead(kPixelSize, [this] { return NumberBytes(PixelBits(), 4); });
    m_file.AddNumber(kPayloadSize, Access::kRead, 0);
    m_file.OnRead(kPayloadSize, [this] {
        return NumberBytes(std::uint64_t{m_file.Number(kWidth)} * m_file.Number(kHeight) * PixelBits() / 8, 4);
    });
    AddNumber(kTestPattern, 0, 0, m_model.isColor ? 6 : 5);
    AddNumber(kLUTEnable, 0, 0, 1);
    AddNumber(kLUTIndex, 0, 0, kLutSize - 1);
    for (std::uint32_t index = 0; index < kLutSize; ++index)
        AddNumber(kLUTValue.At(std::uint64_t{index} * 4), index * 16, 0, 4095);
}

/// The slower of exposure, sensor and the limit that is set.
float Features::ResultingRate() const {
    const float exposure = 1e7F / static_cast<float>(m_file.Number(kExposureTime));
    const float sensor =
        m_model.rateMax * static_cast<float>(m_model.sensorHeight) / static_cast<float>(m_file.Number(kHeight));
    const float limit = m_file.Number(kAcquisitionFrameRateEnable) == 0
                            ? m_model.rateMax
                            : std::bit_cast<float>(m_file.Number(kAcquisitionFrameRate));
    return std::min({exposure, sensor, limit, m_model.rateMax});
}

std::uint16_t Features::ChangeExposureAuto(std::uint32_t mode) {
    constexpr std::uint32_t kGoodExposure = 80'000;  // tenths of a microsecond
    if (mode > kAutoContinuous || (mode != 0 && m_model.isLineScan))
        return kInvalid;
    if (mode != 0)
        m_file.SetNumber(kExposureTime, kGoodExposure);
    return kOk;
}

void Features::AddAcquisition() {
    AddNumber(kAcquisitionMode, 0, 0, 1);
    AddCommand(kAcquisitionStart, [] { return kOk; });
    AddCommand(kAcquisitionStop, [] { return kOk; });
    AddNumber(kAcquisitionFrameRateEnable, 0, 0, 1);
    AddFloat(kAcquisitionFrameRate, std::min(30.0F, m_model.rateMax), 0.1F, m_model.rateMax);
    AddFloat(kAcquisitionLineRate, std::min(10'000.0F, m_model.rateMax), 100.0F, std::max(100.0F, m_model.rateMax));
    m_file.AddNumber(kResultingFrameRate, Access::kRead, 0);
    m_file.OnRead(kResultingFrameRate, [this] { return FloatBytes(ResultingRate()); });
    AddNumber(kExposureMode, 0, 0, 1);
    AddSetting(kExposureTime, NumberBytes(m_model.isLineScan ? 500 : 50'000, 4));
    m_file.OnWrite(kExposureTime, [this](ByteView value) {
        const std::uint32_t time = gencp::Load32(value, 0);
        return m_file.Number(kExposureAuto) == kAutoContinuous ? gencp::kStatusAccessDenied
                                                               : Check(time >= 10 && time <= m_model.exposureMax * 10);
    });
    AddSetting(kExposureAuto, NumberBytes(0, 4));
    m_file.OnWrite(kExposureAuto, [this](ByteView value) { return ChangeExposureAuto(gencp::Load32(value, 0)); });
    // Once is done with the next image, so it reads back as Off.
    m_file.OnRead(kExposureAuto, [this] {
        const std::uint32_t mode = m_file.Number(kExposureAuto);
        return NumberBytes(mode == kAutoOnce ? 0 : mode, 4);
    });
}

std::uint16_t Features::TriggerSoftware() {
    const std::uint32_t trigger = m_file.Number(kTriggerSelector);
    if (m_file.Number(InGroup(kTriggerMode, trigger)) == kTriggerModeOn &&
        m_file.Number(InGroup(kTriggerSource, trigger)) != kSourceSoftware) {
        return gencp::kStatusWrongConfiguration;
    }
    m_file.SetNumber(kSoftwareTriggerCount, m_file.Number(kSoftwareTriggerCount) + 1);
    return kOk;
}

void Features::AddTriggers() {
    const std::uint32_t last = m_model.isLineScan ? kLineStart : kFrameStart;
    AddNumber(kTriggerSelector, kFrameStart, 0, last);
    for (std::uint32_t trigger = 0; trigger < kTriggerCount; ++trigger) {
        AddNumber(InGroup(kTriggerMode, trigger), 0, 0, kTriggerModeOn);
        AddNumber(InGroup(kTriggerSource, trigger), 0, 0, 6);
        AddNumber(InGroup(kTriggerActivation, trigger), 0, 0, 4);
        AddNumber(InGroup(kTriggerDelay, trigger), 0, 0, 10'000'000);
    }
    m_file.AddNumber(kSoftwareTriggerCount, Access::kRead, 0);
    AddCommand(kTriggerSoftware, [this] { return TriggerSoftware(); });
}

void Features::AddLines() {
    AddNumber(kLineSelector, 0, 0, kLineCount - 1);
    for (std::uint32_t line = 0; line < kLineCount; ++line) {
        const bool isOutput = line >= kLineCount / 2;
        m_file.AddNumber(InGroup(kLineMode, line), Access::kRead, isOutput ? 1 : 0);
        AddNumber(InGroup(kLineInverter, line), 0, 0, 1);
        AddNumber(InGroup(kLineSource, line), 0, 0, isOutput ? 3 : 0);
        m_file.AddNumber(InGroup(kLineStatus, line), Access::kRead, 0);
        m_file.OnRead(InGroup(kLineStatus, line), [this, line] { return m_file.Value(InGroup(kLineInverter, line)); });
    }
}

void Features::AddAnalog() {
    AddNumber(kGainRaw, 0, 0, m_model.gainMax);
    AddNumber(kBlackLevelRaw, 16, 0, 255);
    AddSetting(kGamma, NumberBytes(std::bit_cast<std::uint64_t>(1.0), 8));
    m_file.OnWrite(kGamma, [](ByteView value) {
        const double gamma = std::bit_cast<double>(gencp::Load64(value, 0));
        return Check(gamma >= 0.25 && gamma <= 4.0);
    });
}

/// The configuration is as large as the taps need; choosing one by itself takes the most taps that it has.
void Features::AddTransport() {
    AddSetting(kClTapGeometry, NumberBytes(1, 4));
    m_file.OnWrite(kClTapGeometry, [this](ByteView value) {
        const std::uint32_t geometry = gencp::Load32(value, 0);
        if (geometry >= kTaps.size())
            return kInvalid;
        m_file.SetNumber(kClConfiguration, ConfigurationOf(kTaps[geometry]));
        return kOk;
    });
    AddSetting(kClConfiguration, NumberBytes(0, 4));
    m_file.OnWrite(kClConfiguration, [this](ByteView value) {
        constexpr std::array<std::uint32_t, 4> kGeometries{2, 3, 4, 5};
        const std::uint32_t configuration = gencp::Load32(value, 0);
        if (configuration >= kGeometries.size())
            return kInvalid;
        if (configuration != m_file.Number(kClConfiguration))
            m_file.SetNumber(kClTapGeometry, kGeometries[configuration]);
        return kOk;
    });
}

Features::Values Features::Present() const {
    Values values;
    for (const Register& where : m_settings)
        values.emplace_back(where, m_file.Value(where));
    return values;
}

std::uint16_t Features::LoadUserSet(std::uint32_t number) {
    for (const auto& [where, value] : m_userSets.at(number))
        m_file.SetValue(where, value);
    return kOk;
}

std::uint16_t Features::SaveUserSet(std::uint32_t number) {
    if (number == 0)
        return gencp::kStatusWriteProtected;
    m_userSets.at(number) = Present();
    return kOk;
}

void Features::AddUserSets() {
    m_userSets.fill(Present());
    const auto last = static_cast<std::uint32_t>(m_userSets.size() - 1);
    for (const Register& where : {kUserSetSelector, kUserSetDefault}) {
        m_file.AddNumber(where, Access::kReadWrite, 0);
        m_file.OnWrite(where, [last](ByteView value) { return Check(gencp::Load32(value, 0) <= last); });
    }
    AddCommand(kUserSetLoad, [this] { return LoadUserSet(m_file.Number(kUserSetSelector)); });
    AddCommand(kUserSetSave, [this] { return SaveUserSet(m_file.Number(kUserSetSelector)); });
}

/**
 * \brief Take over the values that the camera starts with
 */
void Features::PowerOn() {
    LoadUserSet(m_file.Number(kUserSetDefault));
    m_file.SetNumber(kUserSetSelector, 0);
    m_file.SetNumber(kSoftwareTriggerCount, 0);
}

/**
 * \brief Tell whether writing to an address takes the camera long
 */
bool Features::IsSlow(std::uint64_t address) const {
    return address == kUserSetLoad.address || address == kUserSetSave.address || address == kDeviceReset.address;
}

}  // namespace MarlowSim
