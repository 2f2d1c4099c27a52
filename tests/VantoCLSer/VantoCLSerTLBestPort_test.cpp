/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of choosing the entry of the configuration that suits a camera best
 */

#include "VantoCLSer/VantoCLSerTL.h"

#include "TlFixture.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;

class BestPortConfiguration : public testing::Test {
protected:
    static PortConfiguration Entry(const char* manufacturer, const char* family = "", const char* model = "") {
        PortConfiguration entry;
        entry.id = "port";
        entry.manufacturer = manufacturer;
        entry.family = family;
        entry.model = model;
        entry.enabled = true;
        return entry;
    }
    // Index of the entry that is found; -1 for none.
    static int Find(const PortConfigurationList& entries, const char* deviceId = "d#f#Marlow#Heron#H2048#1234") {
        const PortConfiguration* found = FindBestPortConfiguration("port", deviceId, entries);
        return found != nullptr ? static_cast<int>(found - entries.data()) : -1;
    }
};

TEST_F(BestPortConfiguration, IsNoneOfNone) {
    EXPECT_EQ(Find({}), -1);
}

TEST_F(BestPortConfiguration, NeedsTheMaker) {
    EXPECT_EQ(Find({Entry("Marlow")}), 0);
    EXPECT_EQ(Find({Entry("Another", "Heron", "H2048"), Entry("marlow"), Entry("")}), -1);
}

TEST_F(BestPortConfiguration, PrefersTheFamily) {
    EXPECT_EQ(Find({Entry("Marlow"), Entry("Marlow", "Heron"), Entry("Marlow", "Egret")}), 1);
}

TEST_F(BestPortConfiguration, PrefersTheModelOfTheFamily) {
    EXPECT_EQ(Find({Entry("Marlow", "Heron"), Entry("Marlow", "Heron", "H4096"), Entry("Marlow", "Heron", "H2048")}),
              2);
}

TEST_F(BestPortConfiguration, LooksAtTheModelOnlyWithinTheFamily) {
    EXPECT_EQ(Find({Entry("Marlow", "", "H4096"), Entry("Marlow", "Egret", "H2048")}), 0);
    EXPECT_EQ(Find({Entry("Marlow", "", "H2048"), Entry("Marlow", "Heron")}), 1);
}

TEST_F(BestPortConfiguration, ComparesCaseSensitively) {
    EXPECT_EQ(Find({Entry("Marlow", "heron", "H2048"), Entry("Marlow", "Heron", "h2048")}), 1);
}

TEST_F(BestPortConfiguration, KeepsTheEarlierOfEquals) {
    EXPECT_EQ(Find({Entry("Marlow", "Heron", "H2048"), Entry("Marlow", "Heron", "H2048")}), 0);
    EXPECT_EQ(Find({Entry("Marlow", "x"), Entry("Marlow", "y")}), 0);
}

TEST_F(BestPortConfiguration, LeavesDisabledEntriesOut) {
    PortConfiguration disabled = Entry("Marlow", "Heron", "H2048");
    disabled.enabled = false;
    EXPECT_EQ(Find({disabled, Entry("Marlow")}), 1);
}

TEST_F(BestPortConfiguration, LeavesOtherPortsOut) {
    PortConfiguration other = Entry("Marlow", "Heron", "H2048");
    other.id = "Port";
    EXPECT_EQ(Find({other, Entry("Marlow")}), 1);
}

TEST_F(BestPortConfiguration, MatchesAnEmptyMakerWithAnEmptyMaker) {
    EXPECT_EQ(Find({Entry("Marlow"), Entry("")}, "d#f##Heron#H2048#1234"), 1);
}

TEST_F(BestPortConfiguration, WarnsForEachEntryOfAnIdentifierThatIsNone) {
    const tracelog::LogRecorder log("Vanto.CLSer.TL:trace");
    PortConfiguration other = Entry("");
    other.id = "another";
    EXPECT_EQ(Find({Entry(""), other, Entry("Marlow")}, "nonsense"), -1);
    EXPECT_EQ(log.GetMessages().size(), 2u);
    EXPECT_EQ(log.CountText("Could not parse DeviceID 'nonsense', skipping!", kWarning), 2u);
    EXPECT_EQ(log.CountFormat("Could not parse DeviceID '%s', skipping!", kWarning), 2u);
}

}  // namespace
}  // namespace Vanto
