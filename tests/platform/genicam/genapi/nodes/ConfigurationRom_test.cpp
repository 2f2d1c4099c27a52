/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Entries of a configuration ROM (IEEE 1212)
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class ConfigurationRom : public NodeMapTest {
protected:
    void LoadRom() {
        Load(
            "<ConfRom Name='Rom'><Address>0x400</Address><Length>64</Length><AccessMode>RO</AccessMode>"
            "<pPort>Device</pPort><IntKey Name='Vendor'>0x03</IntKey></ConfRom>"
            "<TextDesc Name='Model'><p1212Parser>Rom</p1212Parser><Key>0x81</Key></TextDesc>"
            "<IntKey Name='Spec'><p1212Parser>Rom</p1212Parser><Key>0x12</Key></IntKey>"
            "<IntKey Name='Missing'><p1212Parser>Rom</p1212Parser><Key>0x17</Key></IntKey>");
        // Bus information block of one quadlet, then the root directory: immediate 0x03, leaf 0x81, directory 0xD1.
        port.PutBig(0x400, 0x01000000, 4);
        port.PutBig(0x404, 0, 4);
        port.PutBig(0x408, 0x00030000, 4);
        port.PutBig(0x40C, 0x03ABCDEF, 4);
        port.PutBig(0x410, 0x81000004, 4);
        port.PutBig(0x414, 0xD1000001, 4);
        port.PutBig(0x418, 0x00010000, 4);
        port.PutBig(0x41C, 0x1200A02D, 4);
        port.PutBig(0x420, 0x00040000, 4);
        port.PutText(0x42C, "CAM-7");
    }
};

TEST_F(ConfigurationRom, HasIntegersByKey) {
    LoadRom();
    EXPECT_EQ(Integer("Spec")->GetValue(), 0xA02D);
    EXPECT_EQ(Mode("Spec"), RO);
}

TEST_F(ConfigurationRom, HasTextsByKey) {
    LoadRom();
    EXPECT_EQ(String("Model")->GetValue(), "CAM-7");
    EXPECT_EQ(String("Model")->GetMaxLength(), 64);
}

TEST_F(ConfigurationRom, MissesAKeyWithAnException) {
    LoadRom();
    EXPECT_THROW(Integer("Missing")->GetValue(), OutOfRangeException);
}

TEST_F(ConfigurationRom, SurvivesNonsense) {
    LoadRom();
    for (unsigned seed = 1; seed < 200; ++seed) {
        for (int i = 0; i < 64; i += 4)
            port.PutBig(0x400 + i, seed * 2654435761U * static_cast<unsigned>(i + 1), 4);
        map._InvalidateNodes();
        try {
            String("Model")->GetValue();
        } catch (const OutOfRangeException&) {
            continue;
        }
    }
}

}  // namespace genapitest
