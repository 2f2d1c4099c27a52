/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Threads that use a device, enumerate, and make and destroy another device, all at once
 */

#include <cstdlib>

#include "tests/VantoCLSer/stress/Stress.h"
#include "tests/integration/Machine.h"
#include "tests/integration/SmallDescription.h"

namespace integration {
namespace {

// A moment shows that nothing hangs; VANTO_TEST_SECONDS sets more, for races under ThreadSanitizer.
std::chrono::seconds Duration() {
    const char* text = std::getenv("VANTO_TEST_SECONDS");
    return text != nullptr ? std::chrono::seconds(std::atoi(text)) : clser_test::kFullTime;
}

class Threads : public Machine {
protected:
    Threads() {
        m_descriptions.Write("camera.xml", SmallDescription());
        for (const char* number : {"0", "1"}) {
            auto camera = Camera(number);
            camera.descriptionFile = m_descriptions / "camera.xml";
            Add(std::string("cam") + number, camera);
        }
    }

    static GenApi::CIntegerPtr Node(Vanto::IVantoDevice& device, const char* name) {
        return GenApi::CIntegerPtr(device.GetNodeMap()->GetNode(name));
    }

    // Whatever goes wrong here is wrong: nobody else has this camera, and enumerating must not disturb.
    static void MakeUseAndDestroy(const CDeviceInfo& record, std::mt19937& random) {
        Vanto::IVantoDevice* const device = CTlFactory::GetInstance().CreateDevice(record);
        device->Open();
        const auto level = static_cast<std::int64_t>(random() % 256);
        Node(*device, "BlackLevelRaw")->SetValue(level);
        EXPECT_EQ(Node(*device, "BlackLevelRaw")->GetValue(false, true), level);
        if (random() % 2 == 0)
            device->Close();
        CTlFactory::GetInstance().DestroyDevice(device);
    }

    scripted::TemporaryFolder m_descriptions;
};

TEST_F(Threads, NeitherRaceNorDisturbEachOther) {
    const DeviceInfoList records = Enumerate();
    ASSERT_EQ(records.size(), 2u);
    Vanto::IVantoDevice* const device = CTlFactory::GetInstance().CreateDevice(records[0]);
    device->Open();
    std::atomic<int> made{0};
    std::atomic<int> enumerated{0};
    clser_test::Stress stress;
    stress.Add([&](std::mt19937&) { EXPECT_EQ(Node(*device, "Width")->GetValue(false, true), 2048); });
    stress.Add([&](std::mt19937& random) {
        EXPECT_NO_THROW(Node(*device, "BlackLevelRaw")->SetValue(static_cast<std::int64_t>(random() % 256)));
    });
    stress.Add([&](std::mt19937&) {
        EXPECT_THAT(SerialNumbers(), testing::Contains(records[0].GetSerialNumber().str()));
        ++enumerated;
    });
    stress.Add([&](std::mt19937& random) {
        EXPECT_NO_THROW(MakeUseAndDestroy(records[1], random));
        ++made;
    });
    EXPECT_GT(stress.Run(Duration()), 0u);
    std::cout << made << " devices made, " << enumerated << " enumerations\n";
    EXPECT_GT(made, 0);
    EXPECT_GT(enumerated, 0);
    device->Close();
    CTlFactory::GetInstance().DestroyDevice(device);
    EXPECT_THAT(SerialNumbers(), testing::SizeIs(2));
}

}  // namespace
}  // namespace integration
