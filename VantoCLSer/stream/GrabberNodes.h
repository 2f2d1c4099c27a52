/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The nodes that a stream grabber uses, of its own node map and of the camera's
 */
#pragma once

#include <array>

#include "GenApi/GenApi.h"
#include "vanto/GrabResult.h"
#include "vanto/PixelTypeMapper.h"

namespace Vanto {

/// Bound once, by Bind; everything else is thread-safe then.
class CGrabberNodes {
public:
    explicit CGrabberNodes(GenApi::INodeMap* camera);

    void Bind(GenApi::INodeMap* stream);
    void SetMaxBufferSize();

    void CopyAreaOfInterest() noexcept;
    void SetPixelSize(std::int64_t bitsPerPixel) noexcept;

    /// The nodes that tell about a frame; null where the camera has none.
    std::array<GenApi::INode*, 3> ResultNodes() const;
    bool ReadResultData(GrabResult& result) const;
    bool AreResultDataCached() const;

private:
    template <class Pointer>
    void BindNode(Pointer& pointer, GenApi::INodeMap* map, const char* name, bool isRequired);
    const char* NameOf(const GenApi::INodeMap* map) const noexcept;

    GenApi::INodeMap* const m_camera;
    const GenApi::CEnumerationPtr m_pixelFormat;
    const CPixelTypeMapper m_pixelTypes;
    GenApi::INodeMap* m_stream = nullptr;
    GenApi::CBooleanPtr m_copyAreaOfInterest;
    GenApi::CIntegerPtr m_pixelSizeByte;
    GenApi::CIntegerPtr m_width;
    GenApi::CIntegerPtr m_height;
    GenApi::CIntegerPtr m_cameraOffsetX;
    GenApi::CIntegerPtr m_cameraOffsetY;  // null for a camera without it
};

}  // namespace Vanto
