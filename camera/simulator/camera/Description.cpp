/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description file that a camera holds
 */

#include "camera/Description.h"

#include <fmt/format.h>

#include <array>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <stdexcept>

#include "base/Stream.h"
#include "camera/Template.h"
#include "gencp/BaudRate.h"
#include "simulator/CameraRegisters.h"

extern const char kHeronDescription[];

namespace MarlowSim {

namespace {

using gencp::Register;

struct NamedRegister {
    const char* name;
    Register where;
};

/// The registers that the description names; those of the features, then those of the bootstrap map.
constexpr std::array kRegisters{
    NamedRegister{"FirmwareVersion", registers::kFirmwareVersion},
    NamedRegister{"DeviceReset", registers::kDeviceReset},
    NamedRegister{"DeviceTemperature", registers::kDeviceTemperature},
    NamedRegister{"DeviceScanType", registers::kDeviceScanType},
    NamedRegister{"SensorWidth", registers::kSensorWidth},
    NamedRegister{"SensorHeight", registers::kSensorHeight},
    NamedRegister{"WidthMax", registers::kWidthMax},
    NamedRegister{"HeightMax", registers::kHeightMax},
    NamedRegister{"Width", registers::kWidth},
    NamedRegister{"Height", registers::kHeight},
    NamedRegister{"OffsetX", registers::kOffsetX},
    NamedRegister{"OffsetY", registers::kOffsetY},
    NamedRegister{"BinningHorizontal", registers::kBinningHorizontal},
    NamedRegister{"BinningVertical", registers::kBinningVertical},
    NamedRegister{"ImageFlags", registers::kImageFlags},
    NamedRegister{"PixelFormat", registers::kPixelFormat},
    NamedRegister{"PixelSize", registers::kPixelSize},
    NamedRegister{"TestPattern", registers::kTestPattern},
    NamedRegister{"PayloadSize", registers::kPayloadSize},
    NamedRegister{"AcquisitionMode", registers::kAcquisitionMode},
    NamedRegister{"AcquisitionStart", registers::kAcquisitionStart},
    NamedRegister{"AcquisitionStop", registers::kAcquisitionStop},
    NamedRegister{"AcquisitionFrameRateEnable", registers::kAcquisitionFrameRateEnable},
    NamedRegister{"AcquisitionFrameRate", registers::kAcquisitionFrameRate},
    NamedRegister{"AcquisitionLineRate", registers::kAcquisitionLineRate},
    NamedRegister{"ExposureMode", registers::kExposureMode},
    NamedRegister{"ExposureAuto", registers::kExposureAuto},
    NamedRegister{"ExposureTime", registers::kExposureTime},
    NamedRegister{"GainRaw", registers::kGainRaw},
    NamedRegister{"BlackLevelRaw", registers::kBlackLevelRaw},
    NamedRegister{"Gamma", registers::kGamma},
    NamedRegister{"LUTEnable", registers::kLUTEnable},
    NamedRegister{"LUTIndex", registers::kLUTIndex},
    NamedRegister{"LUTValue", registers::kLUTValue},
    NamedRegister{"TriggerSelector", registers::kTriggerSelector},
    NamedRegister{"TriggerSoftware", registers::kTriggerSoftware},
    NamedRegister{"TriggerMode", registers::kTriggerMode},
    NamedRegister{"TriggerSource", registers::kTriggerSource},
    NamedRegister{"TriggerActivation", registers::kTriggerActivation},
    NamedRegister{"TriggerDelay", registers::kTriggerDelay},
    NamedRegister{"LineSelector", registers::kLineSelector},
    NamedRegister{"LineMode", registers::kLineMode},
    NamedRegister{"LineInverter", registers::kLineInverter},
    NamedRegister{"LineSource", registers::kLineSource},
    NamedRegister{"LineStatus", registers::kLineStatus},
    NamedRegister{"ClConfiguration", registers::kClConfiguration},
    NamedRegister{"ClTapGeometry", registers::kClTapGeometry},
    NamedRegister{"DeviceClockFrequency", registers::kDeviceClockFrequency},
    NamedRegister{"UserSetSelector", registers::kUserSetSelector},
    NamedRegister{"UserSetLoad", registers::kUserSetLoad},
    NamedRegister{"UserSetSave", registers::kUserSetSave},
    NamedRegister{"UserSetDefault", registers::kUserSetDefault},
    NamedRegister{"ResultingFrameRate", registers::kResultingFrameRate},
    NamedRegister{"SoftwareTriggerCount", registers::kSoftwareTriggerCount},
    NamedRegister{"BaudRate", gencp::kBaudRateRegister},
    NamedRegister{"ManufacturerName", gencp::abrm::kManufacturerName},
    NamedRegister{"ModelName", gencp::abrm::kModelName},
    NamedRegister{"FamilyName", gencp::abrm::kFamilyName},
    NamedRegister{"DeviceVersion", gencp::abrm::kDeviceVersion},
    NamedRegister{"ManufacturerInfo", gencp::abrm::kManufacturerInfo},
    NamedRegister{"SerialNumber", gencp::abrm::kSerialNumber},
    NamedRegister{"UserDefinedName", gencp::abrm::kUserDefinedName},
    NamedRegister{"HeartbeatTimeout", gencp::abrm::kHeartbeatTimeout},
    NamedRegister{"Timestamp", gencp::abrm::kTimestamp},
    NamedRegister{"TimestampLatch", gencp::abrm::kTimestampLatch},
};

constexpr const char* kVersionGuid = "VersionGuid";

std::map<std::string, std::string, std::less<>> ValuesOf(const CameraModel& model) {
    std::map<std::string, std::string, std::less<>> values;
    for (const NamedRegister& reg : kRegisters)
        values[reg.name] = fmt::format("0x{:X}", reg.where.address);
    values["Model"] = model.name;
    values["ProductGuid"] = model.productGuid;
    values["WidthMin"] = std::to_string(model.widthMin);
    values["WidthInc"] = std::to_string(model.widthInc);
    values["HeightMin"] = std::to_string(model.heightMin);
    values["HeightInc"] = std::to_string(model.heightInc);
    values["OffsetXInc"] = std::to_string(model.offsetXInc);
    values["OffsetYInc"] = std::to_string(model.offsetYInc);
    values["BinningMax"] = std::to_string(model.binningMax);
    values["RateMax"] = fmt::format("{}", model.rateMax);
    values["ExposureMax"] = std::to_string(model.exposureMax);
    values["GainMax"] = fmt::format("{}", model.gainMax / 10);
    values["GainRawMax"] = std::to_string(model.gainMax);
    return values;
}

std::set<std::string, std::less<>> ConditionsOf(const CameraModel& model, std::uint32_t rates) {
    std::set<std::string, std::less<>> conditions{model.isLineScan ? "line" : "area"};
    if (model.isColor)
        conditions.insert("color");
    for (const PixelFormat& format : model.formats)
        conditions.insert(std::string(format.name));
    for (const gencp::BaudRate& rate : gencp::kBaudRates) {
        if ((rates & rate.flag) != 0)
            conditions.insert(fmt::format("rate{}", rate.bitsPerSecond));
    }
    return conditions;
}

/// A different text gets a different GUID, and the same text always the same one.
std::string GuidOf(std::string_view text) {
    const base::Sha1Sum sum = base::Sha1(text);
    std::string guid;
    for (std::size_t index = 0; index < 16; ++index) {
        guid += index == 4 || index == 6 || index == 8 || index == 10 ? "-" : "";
        guid += fmt::format("{:02X}", sum[index]);
    }
    return guid;
}

/// A comment at the end brings the text to its size; its letters are random, so that zipping does not undo it.
void Pad(std::string& text, std::size_t size, std::uint64_t seed) {
    constexpr std::string_view kBegin = "<!-- ";
    constexpr std::string_view kEnd = " -->\n";
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz     \n";
    if (size < text.size() + kBegin.size() + kEnd.size())
        return;
    const std::size_t count = size - text.size() - kBegin.size() - kEnd.size();
    std::mt19937_64 random(seed);
    text += kBegin;
    for (std::size_t index = 0; index < count; ++index)
        text += kLetters[random() % kLetters.size()];
    text += kEnd;
}

std::string ReadTextFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string text = *base::ReadAll(stream);
    if (!stream.eof())
        throw std::invalid_argument("cannot read the description file " + path);
    return text;
}

/// The file without what comes of a fault.
gencp::Bytes FileBytes(const CameraModel& model, std::string_view text, bool isZip) {
    return isZip ? ZipOneFile(std::string(model.name) + ".xml", text) : gencp::Bytes(text.begin(), text.end());
}

}  // namespace

/**
 * \brief Give a camera's description as text
 * \throw std::invalid_argument The file that the options name cannot be read
 */
std::string DescriptionText(const CameraModel& model, const CameraOptions& options) {
    if (!options.descriptionFile.empty())
        return ReadTextFile(options.descriptionFile);
    auto values = ValuesOf(model);
    const auto conditions = ConditionsOf(model, options.listedRates.value_or(options.rates));
    values[kVersionGuid] = "";
    values[kVersionGuid] = GuidOf(FillTemplate(kHeronDescription, values, conditions));
    std::string text = FillTemplate(kHeronDescription, values, conditions);
    Pad(text, options.descriptionSize, options.seed);
    return text;
}

/**
 * \brief Give a camera's description as the file that it holds, with the fault that the options ask for
 * \throw std::invalid_argument The file that the options name cannot be read
 */
DescriptionFile MakeDescriptionFile(const CameraModel& model, const CameraOptions& options) {
    const DescriptionFault fault = options.descriptionFault;
    DescriptionFile file;
    file.isListed = fault != DescriptionFault::kMissing;
    file.isZip = options.zip || fault == DescriptionFault::kDamagedZip;
    file.bytes = FileBytes(model, DescriptionText(model, options), file.isZip);
    if (fault == DescriptionFault::kEmpty) {
        file.bytes.clear();
    } else if (fault == DescriptionFault::kDamagedZip) {
        file.bytes.resize(file.bytes.size() / 2);
    }
    if (options.sha1)
        file.sha1 = base::Sha1(file.bytes);
    if (fault == DescriptionFault::kWrongSha1)
        file.sha1.front() ^= 1U;
    return file;
}

}  // namespace MarlowSim
