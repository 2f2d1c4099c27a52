/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Description and merge files that are bound to a device that is made
 */

#include "DeviceFixture.h"

namespace clser_test {

using GenICam::gcstring;
using GenICam::gcstring_vector;
using GenICam::GenericException;
using GenICam::RuntimeException;
using namespace Vanto::tracelog;

class DescriptionBinding : public DeviceTest {
protected:
    DescriptionBinding() {
        m_folder.Write("camera.xml", Description("<Integer Name=\"FromFile\"><Value>5</Value></Integer>"));
        m_folder.Write("merge.xml",
                       "<RegisterDescription><Integer Name=\"Merged\"><Value>9</Value></Integer>"
                       "</RegisterDescription>");
    }

    void Bind(const std::string& files, bool useDeviceDescription) const {
        m_folder.Write("DescriptionBindings.xml",
                       std::string("<DescriptionBindings><Binding DeviceClass=\"MarlowCameraLink\"") +
                           (useDeviceDescription ? " UseDeviceDescription=\"true\">" : ">") + files +
                           "</Binding></DescriptionBindings>");
    }
    static bool Has(Vanto::IVantoDevice* device, const char* name) {
        return device->GetNodeMap()->GetNode(name) != nullptr;
    }
    static int Connections() { return scripted::Serial().Port(0).opened; }
    gcstring Path(const char* name) const { return m_folder / name; }

    scripted::TemporaryFolder m_folder;
    scripted::ScopedVariable m_variable{"VANTO_XML_BINDINGS", m_folder.Path()};
};

TEST_F(DescriptionBinding, ReplacesTheCamerasOwn) {
    Bind("<Description File=\"camera.xml\"/>", false);
    Vanto::IVantoDevice* const device = CreateDevice();
    EXPECT_TRUE(Has(device, "FromFile"));
    EXPECT_EQ(device->GetDeviceInfo().GetXMLSource(), Path("camera.xml"));
    EXPECT_EQ(scripted::Driver().CountCalls("clpGetXMLDescription"), 0u);
    EXPECT_EQ(m_log.CountFormat("Using XML from path '%s' for device '%s'", kDebug), 1u);
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, YieldsToTheCamerasOwn) {
    Bind("<Description File=\"camera.xml\"/>", true);
    Vanto::IVantoDevice* const device = CreateDevice();
    EXPECT_FALSE(Has(device, "FromFile"));
    EXPECT_EQ(device->GetDeviceInfo().GetXMLSource(), "Device");
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, ServesACameraThatHoldsNone) {
    Bind("<Description File=\"camera.xml\"/>", true);
    LetCameraHoldNoDescription();
    Vanto::IVantoDevice* const device = CreateDevice();
    EXPECT_TRUE(Has(device, "FromFile"));
    EXPECT_EQ(device->GetDeviceInfo().GetXMLSource(), Path("camera.xml"));
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, MergesAFileIntoTheCamerasOwn) {
    Bind("<Merge File=\"merge.xml\"/>", false);
    Vanto::IVantoDevice* const device = CreateDevice();
    EXPECT_TRUE(Has(device, "Merged"));
    EXPECT_TRUE(Has(device, "Width"));
    EXPECT_EQ(Logged(kDebug, "About to merge file '" + Path("merge.xml").str() + "' into xml."), 1u);
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, MergesAFileIntoAFile) {
    Bind("<Description File=\"camera.xml\"/><Merge File=\"merge.xml\"/>", false);
    Vanto::IVantoDevice* const device = CreateDevice();
    EXPECT_TRUE(Has(device, "Merged"));
    EXPECT_TRUE(Has(device, "FromFile"));
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, RefusesAFragmentBesideAMergeFile) {
    for (const bool fromFile : {false, true}) {
        Bind(std::string(fromFile ? "<Description File=\"camera.xml\"/>" : "") + "<Merge File=\"merge.xml\"/>", false);
        EXPECT_EQ(DescriptionOf<RuntimeException>([this] { m_tl->CreateDevice(Info(), gcstring_vector{kInjected}); }),
                  "Cannot create node map. Too many strings(2) to inject. Currently the injection of only one XML "
                  "string is supported.");
        EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    }
}

TEST_F(DescriptionBinding, ShowsTheHookTheMergeFileLast) {
    Bind("<Merge File=\"merge.xml\"/>", false);
    struct Hook : Vanto::IDeviceCreationHook {
        void OnCreateDevice(Vanto::CDeviceInfo&, gcstring_vector& injected) override {
            seen = injected;
            injected.clear();
        }
        gcstring_vector seen;
    } hook;
    m_tl->SetCreationHook(&hook);
    Vanto::IVantoDevice* const device = m_tl->CreateDevice(Info(), gcstring_vector{kInjected});
    ASSERT_EQ(hook.seen.size(), 2u);
    EXPECT_EQ(hook.seen[0], kInjected);
    EXPECT_NE(hook.seen[1].find("Merged"), gcstring::npos);
    EXPECT_FALSE(Has(device, "Merged"));
    m_tl->DestroyDevice(device);
}

TEST_F(DescriptionBinding, FailsWithoutItsMergeFileBeforeTheCameraIsTouched) {
    Bind("<Merge File=\"missing.xml\"/>", false);
    EXPECT_THROW(CreateDevice(), GenericException);
    EXPECT_EQ(Connections(), 0);
}

TEST_F(DescriptionBinding, FailsWithABrokenRegistryBeforeTheCameraIsTouched) {
    m_folder.Write("DescriptionBindings.xml", "<DescriptionBindings>");
    EXPECT_THROW(CreateDevice(), RuntimeException);
    EXPECT_EQ(Connections(), 0);
}

TEST_F(DescriptionBinding, DestroysTheDeviceWhenItsFileIsMissing) {
    Bind("<Description File=\"missing.xml\"/>", false);
    EXPECT_THROW(CreateDevice(), GenericException);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
}

TEST_F(DescriptionBinding, DestroysTheDeviceWhoseDescriptionIsBroken) {
    Bind("<Description File=\"camera.xml\"/>", true);
    SetXml("<RegisterDescription>");
    EXPECT_THROW(CreateDevice(), GenericException);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    EXPECT_EQ(m_log.CountFormat("Error downloading XML from device '%s': %s", kDebug), 1u);
    EXPECT_EQ(m_log.CountFormat("Using XML from path '%s' for device '%s'"), 0u);
}

}  // namespace clser_test
