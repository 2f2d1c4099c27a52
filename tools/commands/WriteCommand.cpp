/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl write: registers of the camera
 */
#include <fmt/format.h>
#include <string>

#include "base/ValueText.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/RegisterPort.h"

namespace tools {

namespace {

class WriteCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Argument("ADDRESS", m_address, "Address of the first byte, for example 0x10000");
        options.Argument("HEX", m_bytes, "The bytes as pairs of hexadecimal digits, in the order of the addresses");
        options.Notes("Nothing is checked: the camera takes what it is given.");
        options.Example("vanto-cl write 0 0x1000C0 00000001", "Write four bytes");
    }

    ExitCode Run(Output& output) override {
        const std::int64_t address = AddressArgument(m_address);
        const auto bytes = base::BytesFromText(m_bytes);
        if (!bytes)
            throw ToolError(fmt::format("'{}' are no bytes", m_bytes), "Example: 0x0102fe", ExitCode::kUsage);
        const OpenDevice device(Device(), output);
        device.Camera().WriteRegisters(address, *bytes);
        return ExitCode::kDone;
    }

private:
    std::string m_address;
    std::string m_bytes;
};

}  // namespace

constexpr CommandEntry kWriteCommand{"write", "Write a camera's registers", &Make<WriteCommand>};

}  // namespace tools
