/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl read: registers of the camera
 */
#include <fmt/format.h>
#include <algorithm>
#include <string>

#include "base/Text.h"
#include "base/ValueText.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/OptionNumbers.h"
#include "features/RegisterPort.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "system/Files.h"

namespace tools {

namespace {

constexpr std::int64_t kMostBytes = 64 << 20;

/// Sixteen bytes a line: address, digits, and what is a letter of ASCII.
std::string DumpText(std::uint64_t address, const std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t kLine = 16;
    std::string text;
    for (std::size_t begin = 0; begin < bytes.size(); begin += kLine) {
        std::string digits;
        std::string letters;
        for (std::size_t index = begin; index < std::min(begin + kLine, bytes.size()); ++index) {
            digits += fmt::format("{:02x} ", bytes[index]);
            letters += bytes[index] >= 0x20 && bytes[index] < 0x7F ? static_cast<char>(bytes[index]) : '.';
        }
        text += fmt::format("0x{:016x}  {:<48} {}\n", address + begin, digits, letters);
    }
    return text;
}

class ReadCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Argument("ADDRESS", m_address, "Address of the first byte, for example 0x10000");
        options.Argument("LENGTH", m_length, "Number of bytes");
        options.Flag("--dump", m_dump, "Print lines with addresses and letters");
        options.Value("-o,--output", m_file, "FILE", "Write the bytes to FILE");
        options.Flag("--json", m_json, "Print a JSON object");
        options.Exclude("--dump", "--output");
        options.Exclude("--json", "--dump");
        options.Exclude("--json", "--output");
        options.Notes("Without options the bytes are printed as hexadecimal digits, as 'write' takes them.");
        options.Example("vanto-cl read 0 0x4 16 --dump", "Sixteen bytes with addresses and letters");
    }

    ExitCode Run(Output& output) override {
        const std::int64_t address = AddressArgument(m_address);
        const std::int64_t length = NumberOption("LENGTH", m_length, 1, kMostBytes);
        const OpenDevice device(Device(), output);
        std::vector<std::uint8_t> bytes;
        {
            const Progress progress(output, fmt::format("Reading {} bytes from {}", length, device.Name()));
            bytes = ReadRegisters(device, address, length);
        }
        if (!m_file.empty())
            WriteFile(PathOf(m_file), {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        else if (m_json)
            output.Line(ToText(Json{
                {"Address", fmt::format("0x{:X}", address)}, {"Length", length}, {"Bytes", base::HexText(bytes)}}));
        else
            output.Print(m_dump ? DumpText(static_cast<std::uint64_t>(address), bytes) : base::HexText(bytes) + "\n");
        return ExitCode::kDone;
    }

private:
    std::string m_address;
    std::string m_length;
    std::string m_file;
    bool m_dump = false;
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kReadCommand{"read", "Read a camera's registers", &Make<ReadCommand>};

}  // namespace tools
