/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the factory have in common
 */
#pragma once

#include "vanto/TlFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "../TestSupport.h"
#include "Base/GCException.h"
#include "os/Library.h"
#include "scripted/ScriptedControl.h"

namespace factory_test {

using namespace Vanto;

// Path of a library in the folder of transport layers.
inline std::string PathOf(const std::string& name) {
    return Native(TEST_TL_FOLDER "/" + name + TEST_LIBRARY_SUFFIX);
}

inline const os::Library& LoadScripted(const char* name) {
    static std::map<std::string, os::Library> libraries;
    os::Library& library = libraries[name];
    if (!library.IsLoaded())
        library = os::Library(PathOf(name));
    return library;
}

inline scripted::Control& ControlOf(const char* name) {
    return *LoadScripted(name).Get<scripted::GetControlFunction>("GetControl")();
}

inline CDeviceInfo WithSerial(const char* serial) {
    CDeviceInfo info;
    info.SetSerialNumber(serial);
    return info;
}

template <class Operation>
std::string DescriptionOfFailure(Operation operation) {
    try {
        operation();
    } catch (const GenICam::GenericException& error) {
        return error.GetDescription();
    }
    return "no exception";
}

class CTlFactoryTest : public testing::Test {
protected:
    void SetUp() override {
        os::SetEnvironment("VANTO_ROOT", Native(TEST_ROOT));
        m_factory.GetRejectedTls();  // loads
        m_a.Reset();
        m_b.Reset();
    }
    // Whatever a test does, nothing of it stays.
    void TearDown() override {
        m_factory.ReleaseUnusedTls();
        EXPECT_EQ(m_a.created, m_a.destroyed);
        EXPECT_EQ(m_b.created, m_b.destroyed);
        EXPECT_EQ(m_a.devices + m_b.devices, 0);
        os::UnsetEnvironment("VANTO_ROOT");
    }

    CTlFactory& m_factory = CTlFactory::GetInstance();
    scripted::Control& m_a = ControlOf("scripted_a");
    scripted::Control& m_b = ControlOf("scripted_b");
};

}  // namespace factory_test
