/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of Feature: values of all kinds, what they may be, and what is said when they may not
 */

#include "vanto/Feature.h"

#include <thread>

#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "tests/application/ApplicationTest.h"

namespace {

using application::ApplicationTest;
using application::HasSubstr;
using application::Thrown;
using Vanto::FeatureAccess;
using Vanto::FeatureKind;
using Vanto::FeatureValue;

class Features : public ApplicationTest {
protected:
    const Vanto::Camera camera;
};

TEST_F(Features, AreReadAndSetByName) {
    camera["ExposureTime"] = 500.0;
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 500.0);
    camera.Set("Width", 1024);
    EXPECT_EQ(camera.Get<std::uint16_t>("Width"), 1024);
    camera["PixelFormat"] = "Mono16";
    EXPECT_EQ(camera.Get<std::string>("PixelFormat"), "Mono16");
}

TEST_F(Features, HaveValuesOfTheirKind) {
    EXPECT_EQ(camera["Width"].Value(), FeatureValue(std::int64_t{2048}));
    EXPECT_TRUE(std::holds_alternative<double>(camera["ExposureTime"].Value()));
    EXPECT_EQ(camera["PixelFormat"].Value(), FeatureValue(std::string("Mono8")));
    EXPECT_EQ(camera["DeviceSerialNumber"].Value(), FeatureValue(std::string("21")));
}

TEST_F(Features, AreKnownWithoutTheCameraOnceTheyWereRead) {
    const auto gain = camera["Gain"];
    gain.Refresh();
    EXPECT_EQ(gain.KnownValue(), std::nullopt);
    EXPECT_EQ(gain.KnownValue(), std::nullopt);
    const FeatureValue value = gain.Value();
    EXPECT_EQ(gain.KnownValue(), value);
    const FeatureValue format = camera["PixelFormat"].Value();
    EXPECT_EQ(camera["PixelFormat"].KnownValue(), format);
    EXPECT_EQ(camera["UserSetLoad"].KnownValue(), std::nullopt);
}

TEST_F(Features, AreNotWaitedForWhereOnlyWhatIsKnownIsWanted) {
    const auto width = camera["Width"];
    width.Value();
    GenApi::CLock& lock = width.Node().GetNodeMap()->GetLock();
    lock.Lock();
    std::thread([&] { EXPECT_EQ(width.KnownValue(), std::nullopt); }).join();
    lock.Unlock();
    std::thread([&] { EXPECT_EQ(width.KnownValue(), width.Value()); }).join();
}

TEST_F(Features, TakeValuesAsPeopleWriteThem) {
    camera["ExposureTime"] = "2 ms";
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 2000.0);
    camera["ExposureTime"] = "0.0025s";
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 2500.0);
    camera["ExposureTime"] = "+3e3 us";
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 3000.0);
    camera["ExposureTime"] = "500000 ns";
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 500.0);
    camera["Width"] = "0x400";
    EXPECT_EQ(camera.Get<int>("Width"), 1024);
    camera["PixelFormat"] = "mono16";
    EXPECT_EQ(camera["PixelFormat"].Text(), "Mono16");
    camera["Width"] = 512.0;
    EXPECT_EQ(camera.Get<int>("Width"), 512);
}

TEST_F(Features, RefuseAnotherUnit) {
    const auto error = Thrown<Vanto::FeatureTypeError>([&] { camera["ExposureTime"] = "2 Hz"; });
    EXPECT_THAT(error.what(), HasSubstr("ExposureTime is a number in us, which '2 Hz' is not"));
    EXPECT_EQ(error.FeatureName(), "ExposureTime");
    EXPECT_EQ(error.CameraName(), "Marlow H2048 (21)");
    for (const char* text : {"", "ms", "2 m", "2 5 ms", "2 msx", "1e999 us", "nan", "0x us"})
        EXPECT_THROW(camera["ExposureTime"] = text, Vanto::FeatureTypeError) << text;
}

TEST_F(Features, SayWhatTheyTakeWhenAValueIsOutOfRange) {
    const auto error = Thrown<Vanto::FeatureOutOfRange>([&] { camera["ExposureTime"] = 1e12; });
    EXPECT_EQ(error.FeatureName(), "ExposureTime");
    EXPECT_EQ(error.Allowed(), camera["ExposureTime"].Allowed());
    EXPECT_THAT(error.what(), HasSubstr("Marlow H2048 (21): ExposureTime: value "));
    EXPECT_THAT(error.what(), HasSubstr("It takes " + error.Allowed()));
}

TEST_F(Features, ListTheirEntriesWhenThereIsNoSuchOne) {
    const auto error = Thrown<Vanto::FeatureTypeError>([&] { camera["PixelFormat"] = "Mono9"; });
    EXPECT_THAT(error.what(), HasSubstr("has no entry 'Mono9'"));
    EXPECT_THAT(error.Allowed(), HasSubstr("Mono8, "));
}

TEST_F(Features, RefuseToBeWrittenWhenTheyAreReadOnly) {
    const auto error = Thrown<Vanto::FeatureNotAccessible>([&] { camera["DeviceSerialNumber"] = "x"; });
    EXPECT_EQ(error.FeatureName(), "DeviceSerialNumber");
    EXPECT_EQ(camera["DeviceSerialNumber"].Access(), FeatureAccess::kReadOnly);
    EXPECT_FALSE(camera["DeviceSerialNumber"].IsWritable());
    EXPECT_TRUE(camera["DeviceSerialNumber"].IsReadable());
}

TEST_F(Features, WithASimilarNameAreNamed) {
    const auto error = Thrown<Vanto::UnknownFeature>([&] { camera["ExposureTme"]; });
    EXPECT_STREQ(error.what(), "Marlow H2048 (21) has no feature 'ExposureTme'; did you mean 'ExposureTime'?");
    EXPECT_EQ(error.FeatureName(), "ExposureTme");
    EXPECT_FALSE(camera.Features().Contains("ExposureTme"));
}

TEST_F(Features, DoNotLoseBitsOnTheWay) {
    EXPECT_THROW(camera.Get<std::int8_t>("Width"), Vanto::FeatureTypeError);
    EXPECT_EQ(camera.Get<std::uint64_t>("Width"), 2048u);
}

TEST_F(Features, RefuseValuesOfOtherKinds) {
    EXPECT_THROW(camera["Width"] = 1024.5, Vanto::FeatureTypeError);
    EXPECT_THROW(camera["Width"] = "wide", Vanto::FeatureTypeError);
    EXPECT_THROW(camera["Width"] = Vanto::FeatureBytes{1}, Vanto::FeatureTypeError);
    EXPECT_THROW(camera["ExposureTime"] = true, Vanto::FeatureTypeError);
    EXPECT_THROW(camera["PixelFormat"] = 1.5, Vanto::FeatureTypeError);
    EXPECT_THROW(camera["DeviceSerialNumber"].Get<int>(), Vanto::FeatureTypeError);
    EXPECT_THROW(camera["AcquisitionStart"].Value(), Vanto::FeatureTypeError);
    EXPECT_THROW(camera["Width"].Execute(), Vanto::FeatureTypeError);
}

TEST_F(Features, KnowWhatTheyAre) {
    const Vanto::Feature exposure = camera["ExposureTime"];
    EXPECT_EQ(exposure.Name(), "ExposureTime");
    EXPECT_EQ(exposure.Kind(), FeatureKind::kFloat);
    EXPECT_EQ(exposure.Unit(), "us");
    EXPECT_FALSE(exposure.ToolTip().empty() && exposure.Description().empty());
    EXPECT_EQ(camera["PixelFormat"].Kind(), FeatureKind::kEnumeration);
    EXPECT_EQ(camera["AcquisitionStart"].Kind(), FeatureKind::kCommand);
    EXPECT_EQ(camera["Root"].Kind(), FeatureKind::kCategory);
    EXPECT_FALSE(camera["Root"].Children().empty());
}

TEST_F(Features, KnowTheirRange) {
    const auto range = camera["Width"].Range();
    ASSERT_TRUE(range);
    EXPECT_EQ(std::get<std::int64_t>(range->most), 2048);
    ASSERT_TRUE(range->step);
    EXPECT_GT(std::get<std::int64_t>(*range->step), 1);
    EXPECT_GT(std::get<double>(camera["ExposureTime"].Range()->most), 1000.0);
    EXPECT_FALSE(camera["PixelFormat"].Range());
}

TEST_F(Features, KnowTheirEntries) {
    const auto entries = camera["PixelFormat"].Entries();
    const auto mono8 =
        std::find_if(entries.begin(), entries.end(), [](const auto& entry) { return entry.name == "Mono8"; });
    ASSERT_NE(mono8, entries.end());
    EXPECT_TRUE(mono8->isAvailable);
    EXPECT_TRUE(camera["Width"].Entries().empty());
}

TEST_F(Features, KnowTheirSelectors) {
    for (const Vanto::Feature& feature : camera.Features().List()) {
        for (const Vanto::Feature& selected : feature.Selected()) {
            const auto selectors = selected.Selectors();
            EXPECT_TRUE(std::any_of(selectors.begin(), selectors.end(), [&](const auto& selector) {
                return selector.Name() == feature.Name();
            })) << selected.Name();
        }
    }
}

TEST_F(Features, AreSelectedForAWhile) {
    const Vanto::Feature selector = camera["TriggerSelector"];
    const std::string before = selector.Text();
    for (const Vanto::FeatureEntry& entry : selector.Entries()) {
        const auto selection = camera.Select("TriggerSelector", entry.name);
        EXPECT_EQ(selector.Text(), entry.name);
    }
    EXPECT_EQ(selector.Text(), before);
}

TEST_F(Features, AreListedInTheOrderOfTheDescription) {
    const auto all = camera.Features().Names();
    const auto simple = camera.Features().Names(Vanto::FeatureVisibility::kBeginner);
    EXPECT_GT(all.size(), simple.size());
    EXPECT_THAT(simple, testing::IsSubsetOf(all));
    EXPECT_THAT(all, testing::Contains("Width"));
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(Features, AreExecuted) {
    camera["Width"] = 1024;
    camera["UserSetSelector"] = "Default";
    camera.Execute("UserSetLoad");
    camera.Features().Refresh();
    EXPECT_EQ(camera.Get<int>("Width"), 2048);
    camera["UserSetLoad"].Start();
    EXPECT_TRUE(camera["UserSetLoad"].IsDone());
}

TEST_F(Features, TellOfChanges) {
    std::vector<std::int64_t> seen;
    const auto subscription =
        camera["Width"].OnChange([&](const Vanto::Feature& width) { seen.push_back(width.Get<std::int64_t>()); });
    camera["Width"] = 1024;
    camera["Width"] = 512;
    EXPECT_EQ(seen, (std::vector<std::int64_t>{1024, 512}));
}

TEST_F(Features, TellNothingWhenTheSubscriptionEnded) {
    int calls = 0;
    auto subscription = camera["Width"].OnChange([&](const Vanto::Feature&) { ++calls; });
    camera["Width"] = 1024;
    subscription.Cancel();
    camera["Width"] = 512;
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(subscription.IsActive());
}

TEST_F(Features, MayBeUsedByOtherThreadsInAChange) {
    double exposure = 0;
    const auto subscription = camera["Width"].OnChange(
        [&](const Vanto::Feature&) { std::thread([&] { exposure = camera.Get<double>("ExposureTime"); }).join(); });
    camera["Width"] = 1024;
    EXPECT_GT(exposure, 0.0);
}

}  // namespace
