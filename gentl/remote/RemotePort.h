/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RemotePort: the camera's registers and description
 */
#pragma once

#include <memory>

#include "discovery/CameraRecord.h"
#include "ports/Module.h"
#include "remote/OpenCamera.h"
#include "remote/RemoteDescription.h"

namespace gentl {

/// The camera's own register space, with the producer's registers in a part of it that no camera uses.
class RemotePort : public PortObject {
public:
    RemotePort(std::shared_ptr<OpenCamera> camera, const CameraRecord& record, AddedFeatures added, bool readOnly);

    PortFacts Facts() const override;
    DescriptionFacts Description() const override;
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) override;
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) override;

private:
    const std::shared_ptr<OpenCamera> m_camera;
    const CameraRecord m_record;
    const bool m_readOnly;
    const ServedDescription m_served;
    const FeatureMap m_added;
    std::string m_fileName;
};

}  // namespace gentl
