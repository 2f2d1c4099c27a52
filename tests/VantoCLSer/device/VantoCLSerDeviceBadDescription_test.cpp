/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera whose description can't be had, or is none: one error, a free port, and the next attempt works
 */

#include <functional>
#include <stdexcept>

#include "DeviceFixture.h"

namespace clser_test {
namespace {

struct BadDescription {
    std::string name;
    std::function<void(scripted::DriverScript&)> prepare;
};

std::function<void(scripted::DriverScript&)> Xml(const std::string& text) {
    return [text](scripted::DriverScript& driver) { driver.xml[driver.xmlIds] = text; };
}

template <class Fault>
std::function<void(scripted::DriverScript&)> Fetching(const Fault& fault) {
    return [fault](scripted::DriverScript& driver) {
        driver.onGetXml = [fault](const char*, char*, std::uint32_t*) -> std::int32_t { return fault(); };
    };
}

std::string Cut(const std::string& text) {
    return text.substr(0, text.size() / 2);
}

const std::vector<BadDescription>& BadDescriptions() {
    static const std::vector<BadDescription> all = {
        {"IsNoXml", Xml("no XML at all")},
        {"IsCut", Xml(Cut(Description("")))},
        {"HasAnotherRoot", Xml("<CLBindings/>")},
        {"IsABrokenArchive", Xml("PK\x03\x04 broken")},
        {"IsEmpty", Xml("")},
        {"IsNotThere", [](scripted::DriverScript& driver) { driver.onGetXmlIds = [](auto...) { return -20102; }; }},
        {"IsRefused", Fetching([] { return -30106; })},
        {"IsNotAnswered", Fetching([] { return -10004; })},
        {"EndsWithAnUnknownCode", Fetching([] { return -12345; })},
        {"EndsWithAnException", Fetching([]() -> std::int32_t { throw std::runtime_error("the driver's own"); })},
        {"EndsWithoutMemory", Fetching([]() -> std::int32_t { throw std::bad_alloc(); })},
        {"EndsWithANumber", Fetching([]() -> std::int32_t { throw 1; })},
        {"EndsWithAText", Fetching([]() -> std::int32_t { throw "a text"; })},
    };
    return all;
}

class DescriptionThat : public DeviceTest, public testing::WithParamInterface<BadDescription> {};

TEST_P(DescriptionThat, LeavesThePortFreeForTheNextAttempt) {
    scripted::DriverScript& driver = scripted::Driver();
    driver.digests[driver.xmlIds] = "bad";
    GetParam().prepare(driver);
    EXPECT_NE(DescriptionOf<GenICam::GenericException>([&] { CreateDevice(); }), "");
    EXPECT_EQ(driver.CountConnections(), 0u);
    EXPECT_FALSE(scripted::Serial().Port(0).isOpen);
    driver.onGetXml = nullptr;
    driver.onGetXmlIds = nullptr;
    driver.digests[driver.xmlIds] = "good";
    SetXml(Description(BaudRateNodes(AllRates())));
    Vanto::IVantoDevice* const device = CreateDevice();
    device->Open();
    EXPECT_NO_THROW(Integer(device, "Width")->GetValue());
    m_tl->DestroyDevice(device);
}

INSTANTIATE_TEST_SUITE_P(OfACamera, DescriptionThat, testing::ValuesIn(BadDescriptions()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace clser_test
