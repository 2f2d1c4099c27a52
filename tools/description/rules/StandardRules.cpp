/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules of the Standard Feature Naming Convention (SFNC): what a camera must have, and what its names stand for
 */
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>

#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

/// Features that SFNC makes a duty of every camera that delivers images.
constexpr std::array kMandatory{"Width",           "Height",           "PixelFormat",
                                "AcquisitionMode", "AcquisitionStart", "AcquisitionStop"};

using Types = std::map<std::string_view, std::string_view>;

void AddAll(Types& types, std::string_view type, std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names)
        types.emplace(name, type);
}

/// Interface types of the features of SFNC 2.7 that cameras have most.
const Types& StandardTypes() {
    static const Types types = [] {
        Types all;
        AddAll(all, "Integer",
               {"Width",
                "Height",
                "OffsetX",
                "OffsetY",
                "WidthMax",
                "HeightMax",
                "SensorWidth",
                "SensorHeight",
                "BinningHorizontal",
                "BinningVertical",
                "DecimationHorizontal",
                "DecimationVertical",
                "LinePitch",
                "PayloadSize",
                "AcquisitionFrameCount",
                "AcquisitionBurstFrameCount",
                "CounterValue",
                "CounterDuration",
                "LUTIndex",
                "LUTValue",
                "DeviceSFNCVersionMajor",
                "DeviceSFNCVersionMinor",
                "DeviceSFNCVersionSubMinor",
                "DeviceLinkHeartbeatTimeout",
                "TLParamsLocked",
                "FileAccessOffset",
                "FileAccessLength",
                "FileSize",
                "TestPendingAck",
                "SequencerSetSelector"});
        AddAll(all, "Float",
               {"ExposureTime", "Gain", "BlackLevel", "WhiteClip", "Gamma", "BalanceRatio", "AcquisitionFrameRate",
                "AcquisitionLineRate", "DeviceTemperature", "DeviceClockFrequency", "TriggerDelay", "LineDebounceTime",
                "TimerDuration", "TimerDelay", "TimerValue"});
        AddAll(all, "Enumeration",
               {"PixelFormat",
                "PixelColorFilter",
                "PixelSize",
                "AcquisitionMode",
                "TriggerSelector",
                "TriggerMode",
                "TriggerSource",
                "TriggerActivation",
                "TriggerOverlap",
                "ExposureMode",
                "ExposureAuto",
                "GainSelector",
                "GainAuto",
                "BlackLevelSelector",
                "BlackLevelAuto",
                "BalanceRatioSelector",
                "BalanceWhiteAuto",
                "LineSelector",
                "LineMode",
                "LineSource",
                "LineFormat",
                "UserOutputSelector",
                "UserSetSelector",
                "UserSetDefault",
                "TestPattern",
                "TestPatternGeneratorSelector",
                "RegionSelector",
                "BinningHorizontalMode",
                "BinningVerticalMode",
                "SensorTaps",
                "SensorDigitizationTaps",
                "DeviceTapGeometry",
                "DeviceScanType",
                "DeviceType",
                "DeviceTemperatureSelector",
                "DeviceClockSelector",
                "DeviceSerialPortBaudRate",
                "DeviceSerialPortSelector",
                "CounterSelector",
                "CounterEventSource",
                "TimerSelector",
                "TimerTriggerSource",
                "EventSelector",
                "EventNotification",
                "ClConfiguration",
                "ClTimeSlotsCount",
                "LUTSelector",
                "FileSelector",
                "FileOperationSelector",
                "FileOpenMode",
                "FileOperationStatus"});
        AddAll(all, "Boolean",
               {"ReverseX", "ReverseY", "LineInverter", "LineStatus", "UserOutputValue", "LUTEnable",
                "AcquisitionFrameRateEnable", "GammaEnable", "ChunkModeActive", "ChunkEnable", "SequencerMode"});
        AddAll(all, "Command",
               {"AcquisitionStart", "AcquisitionStop", "AcquisitionAbort", "AcquisitionArm", "TriggerSoftware",
                "UserSetLoad", "UserSetSave", "DeviceReset", "TimestampLatch", "TimestampReset", "CounterReset",
                "TimerReset", "FileOperationExecute"});
        AddAll(all, "String",
               {"DeviceVendorName", "DeviceModelName", "DeviceFamilyName", "DeviceManufacturerInfo", "DeviceVersion",
                "DeviceFirmwareVersion", "DeviceSerialNumber", "DeviceUserID"});
        AddAll(all, "Register", {"LUTValueAll", "FileAccessBuffer"});
        // SFNC names both; makers of every kind use either.
        all.erase("SequencerMode");
        all.erase("PixelSize");
        return all;
    }();
    return types;
}

void CheckMandatory(RuleReport& report) {
    const auto isThere = [&](const char* name) { return report.Model().Find(name) != nullptr; };
    if (std::ranges::none_of(kMandatory, isThere))
        return;  // no camera's description: a transport layer's, a frame grabber's
    for (const char* const name : kMandatory)
        if (!isThere(name))
            report.Add("missing-standard-feature", {}, fmt::format("SFNC wants every camera to have {}", name),
                       "software asks for it by this name");
}

// Registers are features of the interface that their kind stands for.
std::string_view InterfaceOf(const DescribedNode& node) {
    const std::string_view kind = node.kind;
    if (kind == "IntReg" || kind == "MaskedIntReg" || kind == "IntSwissKnife" || kind == "IntConverter" ||
        kind == "StructEntry")
        return "Integer";
    if (kind == "FloatReg" || kind == "SwissKnife" || kind == "Converter")
        return "Float";
    return kind == "StringReg" ? "String" : kind;
}

void CheckTypes(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        const auto found = StandardTypes().find(node.name);
        if (found == StandardTypes().end() || node.kind == "EnumEntry" || node.kind == "Category")
            continue;
        if (InterfaceOf(node) != found->second)
            report.Add("standard-name-other-type", node.place,
                       fmt::format("SFNC says that {} is of type {}, here it is {} {}", node.name, found->second,
                                   node.kind.front() == 'I' || node.kind.front() == 'E' ? "an" : "a", node.kind),
                       "software that knows the name will not find the value");
        else if (node.nameSpace == "Custom")
            report.Add("standard-name-custom", node.place,
                       fmt::format("{} is a name of SFNC, but stands in the custom name space", node.name),
                       "set NameSpace=\"Standard\"");
    }
}

}  // namespace

void CheckStandard(RuleReport& report) {
    CheckMandatory(report);
    CheckTypes(report);
}

}  // namespace tools
