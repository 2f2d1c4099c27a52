/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The nodes that a stream grabber uses, of its own node map and of the camera's
 */

#include "VantoCLSer/stream/GrabberNodes.h"

#include <limits>

#include "VantoCLSer/base/Log.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";

GenApi::INode* NodeOf(GenApi::INodeMap* map, const char* name) {
    return map != nullptr ? map->GetNode(name) : nullptr;
}

void CopyIfReadable(GenApi::INodeMap* camera, const char* name, const GenApi::CIntegerPtr& target) {
    const GenApi::CIntegerPtr source = NodeOf(camera, name);
    if (GenApi::IsReadable(source))
        target->SetValue(source->GetValue());
}

void ReadOffset(const GenApi::CIntegerPtr& node, std::int32_t& offset) {
    if (!GenApi::IsReadable(node))
        return;
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    const std::int64_t value = node->GetValue();
    if (value < kMin || value > kMax)
        throw VANTO_EXCEPTION(OutOfRangeException, kSource)("Value %I64i out of range (%i..%i)", value, kMin, kMax);
    offset = static_cast<std::int32_t>(value);
}

// A node that is not there never changes; one that can't be read is as it is until its access mode changes.
template <class Pointer>
bool IsCached(const Pointer& node) {
    return !node.IsValid() || (node->GetNode()->IsAccessModeCacheable() == GenApi::Yes &&
                               (!GenApi::IsReadable(node) || node->IsValueCacheValid()));
}

}  // namespace

CGrabberNodes::CGrabberNodes(GenApi::INodeMap* camera)
    : m_camera(camera), m_pixelFormat(NodeOf(camera, "PixelFormat")), m_pixelTypes(m_pixelFormat) {}

const char* CGrabberNodes::NameOf(const GenApi::INodeMap* map) const noexcept {
    if (map == m_stream)
        return "streamgrabber";
    return map == m_camera ? "device" : "<unknown>";
}

template <class Pointer>
void CGrabberNodes::BindNode(Pointer& pointer, GenApi::INodeMap* map, const char* name, bool isRequired) {
    GenApi::INode* const node = NodeOf(map, name);
    if (node == nullptr) {
        if (isRequired)
            throw VANTO_EXCEPTION(RuntimeException, kSource)("Missing node '%hs' in %hs nodemap.", name, NameOf(map));
        LogTrace(StreamLog(), tracelog::kTrace, "Skipping optional node '%hs'", name);
        return;
    }
    pointer = node;
    if (!pointer.IsValid())
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Invalid node type for node '%hs' in %hs nodemap.", name,
                                                         NameOf(map));
}

/**
 * \brief Look up the nodes of both maps
 * \param[in] stream The stream grabber's own node map
 * \throw RuntimeException A node is missing or of another type
 */
void CGrabberNodes::Bind(GenApi::INodeMap* stream) {
    m_stream = stream;
    BindNode(m_copyAreaOfInterest, m_stream, "CopyAOIFromCamera", true);
    BindNode(m_pixelSizeByte, m_stream, "PixelSizeByte", true);
    BindNode(m_width, m_stream, "Width", true);
    BindNode(m_height, m_stream, "Height", true);
    BindNode(m_cameraOffsetX, m_camera, "OffsetX", true);
    BindNode(m_cameraOffsetY, m_camera, "OffsetY", false);
}

/**
 * \brief Let MaxBufferSize be the size of a picture as it is now
 */
void CGrabberNodes::SetMaxBufferSize() {
    const GenApi::CIntegerPtr payloadSize = m_stream->GetNode("PayloadSize");
    if (!GenApi::IsReadable(payloadSize))
        return;
    const GenApi::CIntegerPtr maxBufferSize = m_stream->GetNode("MaxBufferSize");
    maxBufferSize->SetValue(payloadSize->GetValue(), true);
}

/**
 * \brief Take the camera's width and height over, where that is wanted
 *
 * Touches no lock but those of the node maps: it runs with the camera's held.
 */
void CGrabberNodes::CopyAreaOfInterest() noexcept {
    try {
        if (!m_copyAreaOfInterest->GetValue())
            return;
        CopyIfReadable(m_camera, "Width", m_width);
        CopyIfReadable(m_camera, "Height", m_height);
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kWarning, "Could not copy AOI from camera node map (message='%hs)",
                 error.GetDescription());
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kWarning, "Could not copy AOI from camera node map (message='%hs)",
                 error.what());
    }
}

/**
 * \brief Compute the bytes of a pixel from its bits
 */
void CGrabberNodes::SetPixelSize(std::int64_t bitsPerPixel) noexcept {
    try {
        if (!GenApi::IsWritable(m_pixelSizeByte))
            return;
        m_pixelSizeByte->SetValue(bitsPerPixel <= 8 ? 1 : bitsPerPixel <= 16 ? 2 : 3);
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kWarning, "Could not set pixel size in bytes (message='%hs)",
                 error.GetDescription());
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kWarning, "Could not set pixel size in bytes (message='%hs)", error.what());
    }
}

std::array<GenApi::INode*, 3> CGrabberNodes::ResultNodes() const {
    return {NodeOf(m_camera, "PixelFormat"), NodeOf(m_camera, "OffsetX"), NodeOf(m_camera, "OffsetY")};
}

/**
 * \brief Read what the camera knows about a frame
 * \param[in,out] result A result without values; gets pixel type and offsets
 * \return false when the camera has no pixel format, or one that nobody knows
 * \throw OutOfRangeException An offset does not fit into 32 bits
 * \throw GenericException The camera can't be read
 * \context Any thread; does not allocate
 */
bool CGrabberNodes::ReadResultData(GrabResult& result) const {
    if (!m_pixelFormat.IsValid())
        return false;
    const EPixelType pixelType = m_pixelTypes.GetVantoPixelTypeFromNodeValue(m_pixelFormat->GetIntValue());
    if (pixelType == PixelType_Undefined)
        return false;
    result.pixelType = pixelType;
    ReadOffset(m_cameraOffsetX, result.offsetX);
    ReadOffset(m_cameraOffsetY, result.offsetY);
    return true;
}

/**
 * \brief Whether reading that again would ask nobody but the node map's caches
 *
 * To be asked with the lock of the camera's node map held, right after it was read.
 */
bool CGrabberNodes::AreResultDataCached() const {
    return IsCached(m_pixelFormat) && IsCached(m_cameraOffsetX) && IsCached(m_cameraOffsetY);
}

}  // namespace Vanto
