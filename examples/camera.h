/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera that is opened by the constructor and closed and destroyed by the destructor
 */
#pragma once

#include <iostream>

#include "GenApi/GenApi.h"
#include "vanto/TlFactory.h"

class OpenCamera {
public:
    /// Opens the first camera that has every property of \a wanted; an empty record fits every camera.
    explicit OpenCamera(const Vanto::CDeviceInfo& wanted = Vanto::CDeviceInfo())
        : m_device(Vanto::CTlFactory::GetInstance().CreateFirstDevice(wanted)) {
        try {
            m_device->Open();
        } catch (...) {
            Vanto::CTlFactory::GetInstance().DestroyDevice(m_device);
            throw;
        }
    }
    ~OpenCamera() {
        try {
            if (m_device->IsOpen())
                m_device->Close();
            Vanto::CTlFactory::GetInstance().DestroyDevice(m_device);
        } catch (const std::exception& error) {
            std::cerr << error.what() << '\n';
        }
    }
    OpenCamera(const OpenCamera&) = delete;
    OpenCamera& operator=(const OpenCamera&) = delete;

    Vanto::IVantoDevice* operator->() const { return m_device; }
    GenApi::INode* Feature(const char* name) const { return m_device->GetNodeMap()->GetNode(name); }

private:
    Vanto::IVantoDevice* m_device;
};
