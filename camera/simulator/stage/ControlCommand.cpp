/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands of the control socket
 */

#include "stage/ControlCommand.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "base/Text.h"
#include "camera/TextValues.h"

namespace MarlowSim {

namespace {

using Words = std::vector<std::string>;

struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view help;
    std::size_t minWords;
    std::size_t maxWords;
    std::string (*run)(Simulator& simulator, const Words& words);
};

std::string NameOf(const Words& words) {
    return std::string(words[1]);
}

std::string List(Simulator& simulator, const Words&) {
    std::string text;
    for (const std::string& name : simulator.Names())
        text += (text.empty() ? "" : " ") + name;
    return text;
}

std::string Unplug(Simulator& simulator, const Words& words) {
    simulator.Unplug(NameOf(words));
    return {};
}

std::string Plug(Simulator& simulator, const Words& words) {
    if (words.size() == 3 && words[2] != "keep-power")
        throw std::invalid_argument("'" + std::string(words[2]) + "' is not keep-power");
    simulator.Plug(NameOf(words), words.size() == 3 ? Power::kKept : Power::kLost);
    return {};
}

std::string Exchange(Simulator& simulator, const Words& words) {
    CameraOptions options = simulator.OptionsOf(NameOf(words));
    SetOptions(options, words.size() == 3 ? words[2] : "");
    simulator.Exchange(NameOf(words), options);
    return {};
}

std::string Stats(Simulator& simulator, const Words& words) {
    return simulator.StatisticsOf(NameOf(words)).ToText();
}

std::string ResetStats(Simulator& simulator, const Words& words) {
    simulator.ResetStatistics(NameOf(words));
    return {};
}

std::string Baud(Simulator& simulator, const Words& words) {
    return std::to_string(simulator.BitsPerSecond(NameOf(words)));
}

constexpr std::array<Command, 7> kCommands{{
    {"list", "", "names of all cameras", 1, 1, List},
    {"unplug", "NAME", "pulls the cable", 2, 2, Unplug},
    {"plug", "NAME [keep-power]", "puts the cable in again; the camera starts anew unless it kept its power", 2, 3,
     Plug},
    {"exchange", "NAME key=value,...", "puts another camera at the end of the cable", 2, 3, Exchange},
    {"stats", "NAME", "what the camera has seen and done", 2, 2, Stats},
    {"reset-stats", "NAME", "counts from 0 again", 2, 2, ResetStats},
    {"baud", "NAME", "the present baud rate of the camera", 2, 2, Baud},
}};

std::string Do(Simulator& simulator, const Words& words) {
    if (words.empty())
        throw std::invalid_argument("no command");
    for (const Command& command : kCommands) {
        if (command.name == words[0]) {
            if (words.size() < command.minWords || words.size() > command.maxWords) {
                throw std::invalid_argument("it is: " + std::string(command.name) + " " +
                                            std::string(command.arguments));
            }
            return command.run(simulator, words);
        }
    }
    if (words.size() != 3) {
        throw std::invalid_argument("there is no command '" + std::string(words[0]) + "' with " +
                                    std::to_string(words.size() - 1) + " arguments");
    }
    simulator.SetFault(NameOf(words), words[0], words[2]);
    return {};
}

}  // namespace

/**
 * \brief Carry out one line
 * \return "ok", with a result behind it where there is one, or "error <text>"; always one line
 */
std::string DoControlCommand(Simulator& simulator, std::string_view line) noexcept {
    std::string reply;
    try {
        const std::string result = Do(simulator, base::SplitWithoutEmpty(line, ' '));
        reply = result.empty() ? "ok" : "ok " + result;
    } catch (const std::exception& error) {
        reply = std::string("error ") + error.what();
    }
    for (char& c : reply)
        c = c == '\n' || c == '\r' ? ' ' : c;
    return reply;
}

/**
 * \brief List all commands with a line about each
 */
std::string ControlHelp() {
    constexpr std::size_t kColumn = 32;
    std::string text;
    for (const Command& command : kCommands) {
        std::string line = "  " + std::string(command.name) + " " + std::string(command.arguments);
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        text += line + std::string(command.help) + "\n";
    }
    return text + "  FAULT NAME VALUE              changes one fault: loss cam0 0.02, drop-after cam0 7, ...\n";
}

}  // namespace MarlowSim
