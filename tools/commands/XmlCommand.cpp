/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl xml: a camera's own description
 */
#include <fmt/format.h>
#include <string>

#include "base/Sha1.h"
#include "cameras/CameraSearch.h"
#include "cameras/DescriptionTrouble.h"
#include "cameras/Fetching.h"
#include "cameras/Records.h"
#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Files.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

class XmlCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Value("-o,--output", m_file, "FILE", "Write to FILE instead of standard output");
        options.Notes(
            "The description is printed as the camera gives it, byte by byte, faults included. A description "
            "that was fetched before comes from the cache on disk (GENICAM_CACHE).");
        options.Example("vanto-cl xml 0 -o camera.xml", "Fetch the description of the first camera of the list");
    }

    ExitCode Run(Output& output) override {
        const TransportLayer layer;
        Vanto::IXmlFileProvider* provider = layer.Require().GetXmlFileProvider();
        if (provider == nullptr)
            throw ToolError("the transport layer can't read descriptions from cameras");
        GenICam::gcstring source;
        GenICam::gcstring xml;
        std::chrono::milliseconds elapsed{0};
        {
            const Interruption::Watch watch;
            CameraSearch(layer, output).Find(Device(), [&](const Vanto::CDeviceInfo& camera) {
                const Fetching progress(layer.Ports(), output, "Fetching the description of " + NameOf(camera));
                ReadDescription(NameOf(camera), [&] { provider->ProvideXMLFile(camera, source, xml); });
                elapsed = progress.Elapsed();
            });
            ThrowIfInterrupted();
        }
        if (m_file.empty() || m_file == "-") {
            output.Print(xml.view());
            return ExitCode::kDone;
        }
        WriteFile(PathOf(m_file), xml.view());
        output.Line(fmt::format("{}: {} bytes in {}, SHA-1 {}", Printable(m_file), xml.size(), DurationText(elapsed),
                                base::ToText(base::Sha1(xml.view()))));
        return ExitCode::kDone;
    }

private:
    std::string m_file;
};

}  // namespace

constexpr CommandEntry kXmlCommand{"xml", "Fetch a camera's own description", &Make<XmlCommand>};

}  // namespace tools
