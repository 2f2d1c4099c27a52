/* SPDX-License-Identifier: Apache-2.0 */
/*
 * marlow-sim: plays Marlow cameras on pseudo-terminals
 */

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Sha1.h"
#include "camera/CameraModel.h"
#include "camera/Description.h"
#include "os/StandardStreams.h"
#include "simulator/Simulator.h"
#include "stage/ControlCommand.h"
#include "stage/ControlServer.h"
#include "stage/EndSignal.h"

namespace {

using namespace MarlowSim;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct Arguments {
    std::string links;
    std::vector<std::string> cameras;
    std::string control;
    bool untilStdinCloses = false;
    bool printSha1 = false;
    bool manualPage = false;
};

std::string Footer() {
    return "A camera is NAME[,key=value...] with the keys\n" + OptionsHelp() +
           "\nCommands of the control socket, one a line, each with one line of reply (ok ... or error ...):\n" +
           ControlHelp() +
           "\nExample:\n"
           "  marlow-sim --links /tmp/cameras --camera cam0 --camera cam1,model=H8192L,zip=on\n"
           "  then, in the shell of the application: export CLSERTTY_PATH=/tmp/cameras\n";
}

std::vector<NamedCamera> ParseCameras(const std::vector<std::string>& texts) {
    std::vector<NamedCamera> cameras;
    for (const std::string& text : texts)
        cameras.push_back(ParseCamera(text));
    return cameras;
}

/// Prints the SHA-1 of each camera's description as a host gets it, unpacked, so that a transfer can be checked.
int PrintSha1(const std::vector<NamedCamera>& cameras) {
    for (const NamedCamera& camera : cameras) {
        const std::string text = DescriptionText(FindModel(camera.options.model), camera.options);
        std::cout << base::ToText(base::Sha1(text)) << "  " << camera.name << std::endl;
    }
    return 0;
}

int Play(const Arguments& arguments, const std::vector<NamedCamera>& cameras) {
    KeepEndSignals();
    Simulator simulator(arguments.links);
    for (const NamedCamera& camera : cameras)
        simulator.Add(camera.name, camera.options);
    const auto server = arguments.control.empty() ? nullptr : ControlServer::Create(simulator, arguments.control);
    std::cout << "ready" << std::endl;
    WaitForEnd(arguments.untilStdinCloses);
    return 0;
}

/// Text for roff: a hyphen is to stay one, and a line that begins with a dot is no request.
std::string Roff(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '-' || letter == '\\')
            result += letter == '-' ? "\\-" : "\\e";
        else if (letter == '.' && (result.empty() || result.back() == '\n'))
            result += "\\&.";
        else
            result += letter;
    }
    return result;
}

std::string ManualPage(const CLI::App& app) {
    std::string page = ".TH \"MARLOW\\-SIM\" 1 \"\" \"marlow\\-sim " MARLOW_SIM_VERSION "\" \"Camera Link cameras\"\n";
    page += ".SH NAME\nmarlow\\-sim \\- plays Marlow cameras\n";
    page += ".SH SYNOPSIS\n.B \"marlow\\-sim \\-\\-links FOLDER \\-\\-camera CAMERA ...\"\n";
    page += ".SH DESCRIPTION\n" + Roff(app.get_description()) + "\n.SH OPTIONS\n";
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty())
            page += ".TP\n.B \"" + Roff(option->get_name()) + "\"\n" + Roff(option->get_description()) + ".\n";
    }
    return page + ".SH CAMERAS AND COMMANDS\n.nf\n" + Roff(app.get_footer()) +
           "\n.fi\n.SH SEE ALSO\n.BR vanto\\-cl (1)\n";
}

}  // namespace

int main(int argc, char** argv) {
    os::OccupyStandardStreams();
    Arguments arguments;
    CLI::App app("Plays Marlow cameras. Each has a serial line of its own, which a symbolic link names.", "marlow-sim");
    app.add_option("--links", arguments.links, "Folder of the links; made when it does not exist");
    app.add_option("--camera", arguments.cameras, "A camera, see below; once for each");
    app.add_option("--control", arguments.control, "Unix-domain socket that takes commands, see below");
    app.add_flag("--until-stdin-closes", arguments.untilStdinCloses, "Ends with its standard input as well");
    app.add_flag("--print-sha1", arguments.printSha1, "Prints the SHA-1 of each camera's description and ends");
    app.add_flag("--manual-page", arguments.manualPage, "Prints the manual page and ends")->group("");
    app.set_version_flag("--version", "marlow-sim " MARLOW_SIM_VERSION, "Prints the version and ends");
    app.footer(Footer());
    if (argc == 1) {
        std::cout << app.help();
        return 0;
    }
    try {
        app.parse(argc, argv);
        if (arguments.manualPage) {
            std::cout << ManualPage(app);
            return 0;
        }
        if (arguments.cameras.empty())
            throw CLI::RequiredError("--camera");
        const std::vector<NamedCamera> cameras = ParseCameras(arguments.cameras);
        if (arguments.printSha1)
            return PrintSha1(cameras);
        if (arguments.links.empty())
            throw CLI::RequiredError("--links");
        return Play(arguments, cameras);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kWrongUsage;
    } catch (const std::invalid_argument& error) {
        std::cerr << "marlow-sim: " << error.what() << "\n";
        return kWrongUsage;
    } catch (const std::exception& error) {
        std::cerr << "marlow-sim: " << error.what() << "\n";
        return kFailed;
    }
}
