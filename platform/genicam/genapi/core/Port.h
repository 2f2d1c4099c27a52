/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port: where registers lie
 */
#pragma once

#include "GenApi/IPort.h"
#include "core/Node.h"

namespace GenApi {

/// Port: passes register accesses to what is connected to it.
class CPort final : public CNode, public IPort {
public:
    using CNode::CNode;

    EAccessMode GetAccessMode() const override { return CNode::GetAccessMode(); }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

    EInterfaceType GetPrincipalInterfaceType() const override { return intfIPort; }

    // For the registers; the map's lock is held.
    void ConnectTo(IPort* port) noexcept;
    /// The access mode that the connected port had when it was last asked; NI without one.
    EAccessMode Mode() const noexcept { return m_mode; }
    /// Asks the connected port; true when its access mode is not what it was.
    bool Refresh() noexcept;
    bool SwapsEndianess() const noexcept { return m_swaps; }
    void ReadBytes(void* buffer, std::int64_t address, std::int64_t length);
    void WriteBytes(const void* buffer, std::int64_t address, std::int64_t length);

protected:
    EAccessMode ReadAccess(Evaluation&, bool) override { return m_mode; }

private:
    EAccessMode Ask() const noexcept;

    IPort* m_connected = nullptr;
    EAccessMode m_mode = NI;
    bool m_swaps = false;
};

}  // namespace GenApi
