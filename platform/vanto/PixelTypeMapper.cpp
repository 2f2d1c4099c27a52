/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CPixelTypeMapper: from the values of a camera's PixelFormat node to pixel types
 */

#include "vanto/PixelTypeMapper.h"

#include <algorithm>
#include <string_view>

#include "GenApi/IEnumeration.h"

namespace Vanto {

namespace {

struct Name {
    const char* name;
    EPixelType pixelType;
};

// The names of PFNC; the first of a type is the one in use today, those behind it are the names of SFNC 1.
constexpr Name kNames[] = {
    {"Mono1p", PixelType_Mono1p},
    {"Mono2p", PixelType_Mono2p},
    {"Mono4p", PixelType_Mono4p},
    {"Mono8", PixelType_Mono8},
    {"Mono8s", PixelType_Mono8s},
    {"Mono8Signed", PixelType_Mono8s},
    {"Mono10", PixelType_Mono10},
    {"Mono10Packed", PixelType_Mono10Packed},
    {"Mono10p", PixelType_Mono10p},
    {"Mono12", PixelType_Mono12},
    {"Mono12Packed", PixelType_Mono12Packed},
    {"Mono12p", PixelType_Mono12p},
    {"Mono14", PixelType_Mono14},
    {"Mono14p", PixelType_Mono14p},
    {"Mono16", PixelType_Mono16},
    {"BayerGR8", PixelType_BayerGR8},
    {"BayerRG8", PixelType_BayerRG8},
    {"BayerGB8", PixelType_BayerGB8},
    {"BayerBG8", PixelType_BayerBG8},
    {"BayerGR10", PixelType_BayerGR10},
    {"BayerRG10", PixelType_BayerRG10},
    {"BayerGB10", PixelType_BayerGB10},
    {"BayerBG10", PixelType_BayerBG10},
    {"BayerGR12", PixelType_BayerGR12},
    {"BayerRG12", PixelType_BayerRG12},
    {"BayerGB12", PixelType_BayerGB12},
    {"BayerBG12", PixelType_BayerBG12},
    {"BayerGR14", PixelType_BayerGR14},
    {"BayerRG14", PixelType_BayerRG14},
    {"BayerGB14", PixelType_BayerGB14},
    {"BayerBG14", PixelType_BayerBG14},
    {"BayerGR16", PixelType_BayerGR16},
    {"BayerRG16", PixelType_BayerRG16},
    {"BayerGB16", PixelType_BayerGB16},
    {"BayerBG16", PixelType_BayerBG16},
    {"BayerGR10Packed", PixelType_BayerGR10Packed},
    {"BayerRG10Packed", PixelType_BayerRG10Packed},
    {"BayerGB10Packed", PixelType_BayerGB10Packed},
    {"BayerBG10Packed", PixelType_BayerBG10Packed},
    {"BayerGR12Packed", PixelType_BayerGR12Packed},
    {"BayerRG12Packed", PixelType_BayerRG12Packed},
    {"BayerGB12Packed", PixelType_BayerGB12Packed},
    {"BayerBG12Packed", PixelType_BayerBG12Packed},
    {"BayerBG10p", PixelType_BayerBG10p},
    {"BayerGB10p", PixelType_BayerGB10p},
    {"BayerGR10p", PixelType_BayerGR10p},
    {"BayerRG10p", PixelType_BayerRG10p},
    {"BayerBG12p", PixelType_BayerBG12p},
    {"BayerGB12p", PixelType_BayerGB12p},
    {"BayerGR12p", PixelType_BayerGR12p},
    {"BayerRG12p", PixelType_BayerRG12p},
    {"RGB8", PixelType_RGB8},
    {"RGB8Packed", PixelType_RGB8},
    {"BGR8", PixelType_BGR8},
    {"BGR8Packed", PixelType_BGR8},
    {"RGBa8", PixelType_RGBa8},
    {"RGBA8Packed", PixelType_RGBa8},
    {"BGRa8", PixelType_BGRa8},
    {"BGRA8Packed", PixelType_BGRa8},
    {"RGB10", PixelType_RGB10},
    {"RGB10Packed", PixelType_RGB10},
    {"BGR10", PixelType_BGR10},
    {"BGR10Packed", PixelType_BGR10},
    {"RGB12", PixelType_RGB12},
    {"RGB12Packed", PixelType_RGB12},
    {"BGR12", PixelType_BGR12},
    {"BGR12Packed", PixelType_BGR12},
    {"RGB14", PixelType_RGB14},
    {"BGR14", PixelType_BGR14},
    {"RGB16", PixelType_RGB16},
    {"RGB16Packed", PixelType_RGB16},
    {"BGR16", PixelType_BGR16},
    {"RGB10V1Packed", PixelType_RGB10V1Packed},
    {"RGB10p32", PixelType_RGB10p32},
    {"RGB10V2Packed", PixelType_RGB10p32},
    {"RGB12V1Packed", PixelType_RGB12V1Packed},
    {"RGB10p", PixelType_RGB10p},
    {"RGB12p", PixelType_RGB12p},
    {"BGR10p", PixelType_BGR10p},
    {"BGR12p", PixelType_BGR12p},
    {"RGB565p", PixelType_RGB565p},
    {"RGB565Packed", PixelType_RGB565p},
    {"BGR565p", PixelType_BGR565p},
    {"BGR565Packed", PixelType_BGR565p},
    {"RGB8_Planar", PixelType_RGB8_Planar},
    {"RGB8Planar", PixelType_RGB8_Planar},
    {"RGB10_Planar", PixelType_RGB10_Planar},
    {"RGB10Planar", PixelType_RGB10_Planar},
    {"RGB12_Planar", PixelType_RGB12_Planar},
    {"RGB12Planar", PixelType_RGB12_Planar},
    {"RGB16_Planar", PixelType_RGB16_Planar},
    {"RGB16Planar", PixelType_RGB16_Planar},
    {"YUV411_8_UYYVYY", PixelType_YUV411_8_UYYVYY},
    {"YUV411Packed", PixelType_YUV411_8_UYYVYY},
    {"YUV422_8_UYVY", PixelType_YUV422_8_UYVY},
    {"YUV422Packed", PixelType_YUV422_8_UYVY},
    {"YUV422_8", PixelType_YUV422_8},
    {"YUYVPacked", PixelType_YUV422_8},
    {"YUV8_UYV", PixelType_YUV8_UYV},
    {"YUV444Packed", PixelType_YUV8_UYV},
    {"YCbCr8_CbYCr", PixelType_YCbCr8_CbYCr},
    {"YCbCr422_8", PixelType_YCbCr422_8},
    {"YCbCr422_8_CbYCrY", PixelType_YCbCr422_8_CbYCrY},
    {"YCbCr411_8_CbYYCrYY", PixelType_YCbCr411_8_CbYYCrYY},
};

}  // namespace

/**
 * \brief Read the entries of a PixelFormat node
 * \param[in] pixelFormat The node; null, as of a camera without it, makes every value undefined
 */
CPixelTypeMapper::CPixelTypeMapper(GenApi::IEnumeration* pixelFormat) {
    if (pixelFormat == nullptr)
        return;
    GenApi::NodeList_t nodes;
    pixelFormat->GetEntries(nodes);
    for (GenApi::INode* node : nodes) {
        auto* const entry = dynamic_cast<GenApi::IEnumEntry*>(node);
        if (entry != nullptr)
            m_entries.push_back({entry->GetValue(), GetVantoPixelTypeByName(entry->GetSymbolic())});
    }
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const Entry& left, const Entry& right) { return left.nodeValue < right.nodeValue; });
}

/**
 * \brief The pixel type of a value of the node
 * \return PixelType_Undefined when the node has no such entry or PFNC does not know its name
 * \context Thread-safe; does not allocate
 */
EPixelType CPixelTypeMapper::GetVantoPixelTypeFromNodeValue(std::int64_t nodeValue) const noexcept {
    const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), nodeValue,
                                        [](const Entry& entry, std::int64_t value) { return entry.nodeValue < value; });
    return found != m_entries.end() && found->nodeValue == nodeValue ? found->pixelType : PixelType_Undefined;
}

/**
 * \brief The pixel type of a PFNC name, or of the name that SFNC 1 gave it
 */
EPixelType CPixelTypeMapper::GetVantoPixelTypeByName(const char* name) noexcept {
    const std::string_view wanted = name != nullptr ? name : "";
    const auto* const found =
        std::find_if(std::begin(kNames), std::end(kNames), [&](const Name& known) { return known.name == wanted; });
    return found != std::end(kNames) ? found->pixelType : PixelType_Undefined;
}

/**
 * \brief The PFNC name of a pixel type; "Undefined" when it has none
 */
const char* CPixelTypeMapper::GetNameByPixelType(EPixelType pixelType) noexcept {
    const auto* const found = std::find_if(std::begin(kNames), std::end(kNames),
                                           [&](const Name& known) { return known.pixelType == pixelType; });
    return found != std::end(kNames) ? found->name : "Undefined";
}

}  // namespace Vanto
