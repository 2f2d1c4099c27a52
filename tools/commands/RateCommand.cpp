/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl rate: the baud rate that a camera stands at
 */
#include <fmt/format.h>

#include <string>

#include "cameras/BaudRates.h"
#include "cameras/KnownCamerasFile.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/BaudRateFeature.h"
#include "features/OpenDevice.h"
#include "output/Json.h"
#include "output/Output.h"

namespace tools {

namespace {

class RateCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.OptionalArgument("RATE", m_rate, "The new baud rate, for example 9600");
        options.Flag("--json", m_json, "Print a JSON object");
        options.Notes(
            "Without RATE the present one is printed. The other commands and all applications leave a camera at "
            "the rate at which they found it: one that a program left at 921600 baud stays there until 'rate' or "
            "a power cycle brings it back.");
        options.Example("vanto-cl rate 0", "Print the rate");
        options.Example("vanto-cl rate 0 9600", "Bring the camera back to 9600 baud");
    }

    ExitCode Run(Output& output) override {
        const BaudRate* const wanted = m_rate.empty() ? nullptr : &BaudRateFromWord(m_rate);
        const OpenDevice device(Device(), output, OpenDevice::Use::kConnect);
        BaudRateFeature feature(device.Nodes(), device.Name());
        const std::uint32_t before = feature.Get();
        if (wanted == nullptr) {
            output.Line(m_json ? ToText(Json{{"BaudRate", before}}) : std::to_string(before));
            return ExitCode::kDone;
        }
        feature.Set(*wanted);
        ChangeKnownCameras(output, [&](KnownCameras& known) {
            known.SetRestBaudRate(device.Address(),
                                  wanted->bitsPerSecond == kFirstBaudRate ? 0 : wanted->bitsPerSecond);
        });
        if (m_json)
            output.Line(ToText(Json{{"BaudRate", feature.Get()}, {"Before", before}}));
        else
            output.Line(fmt::format("{} stands at {} baud now; it was {}.", device.Name(), feature.Get(), before));
        return ExitCode::kDone;
    }

private:
    std::string m_rate;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kRateCommand{"rate", "Show a camera's baud rate, or bring it to one to stay",
                                    &Make<RateCommand>};

}  // namespace tools
