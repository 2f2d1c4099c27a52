/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl: chooses the command, runs it, reports how it ended
 */
#include "app/Application.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "app/CommandLine.h"
#include "cameras/LineTrouble.h"
#include "cameras/Simulation.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Interruption.h"

namespace tools {

namespace {

/// Says what is wrong with a command line; help and version are no errors.
ExitCode Report(CommandLine& line, const CLI::ParseError& error, int count, const char* const* arguments,
                Output& output) {
    if (error.get_exit_code() == 0) {
        output.Print(line.Asked(error));
        return ExitCode::kDone;
    }
    std::string hint;
    const std::vector<std::string> names = line.NamesBeside();
    for (int index = 1; index < count && hint.empty(); ++index)
        if (std::find(names.begin(), names.end(), arguments[index]) == names.end())
            hint = DidYouMean(arguments[index], names);
    output.Error(error.what(), hint.empty() ? fmt::format("'{}' explains it.", line.HelpHere()) : hint);
    return ExitCode::kUsage;
}

/// A failure that the user has asked for is none of its own.
ExitCode ReportFailure(const char* text, Output& output) {
    if (Interruption::Requested())
        output.Error("interrupted");
    else if (const std::string sentence = LineTroubleText(text); !sentence.empty())
        output.Error(sentence, text);
    else
        output.Error(text);
    return Interruption::Requested() ? ExitCode::kInterrupted : ExitCode::kFailed;
}

// Wide terminals don't make long lines easier to read.
std::size_t HelpColumns(const Output& output) {
    constexpr int kUsual = 80;
    constexpr int kMost = 110;
    return static_cast<std::size_t>(output.Width() > 0 ? std::min(output.Width(), kMost) : kUsual);
}

ExitCode RunChosen(CommandLine& line, Output& output) {
    std::optional<Simulation> simulation;
    if (line.Simulates())
        simulation.emplace(line.SimulatedCameras());
    return line.Chosen().Run(output);
}

}  // namespace

std::vector<CommandModel> CommandModels() {
    return CommandLine(0).Models();
}

std::string HelpOf(const std::vector<std::string>& words, const Output& output) {
    return CommandLine(HelpColumns(output)).HelpOf(words);
}

/**
 * \brief Run vanto-cl
 * \param[in] argumentCount Number of arguments, the program's name included
 * \param[in] arguments The arguments
 * \param[in] output Where results and messages go
 * \return What the shell is told. Nothing is thrown.
 */
ExitCode RunApplication(int argumentCount, const char* const* arguments, Output& output) {
    ExitCode code = ExitCode::kFailed;
    try {
        CommandLine line(HelpColumns(output));
        try {
            line.Parse(argumentCount, arguments);
            code = RunChosen(line, output);
        } catch (const CLI::ParseError& error) {
            code = Report(line, error, argumentCount, arguments, output);
        }
    } catch (const ToolError& error) {
        output.Error(error.what(), error.Hint());
        code = error.Code();
    } catch (const GenICam::GenericException& error) {
        code = ReportFailure(error.GetDescription(), output);
    } catch (const std::exception& error) {
        code = ReportFailure(error.what(), output);
    }
    if (!output.Flush() && code == ExitCode::kDone) {
        if (!output.ReaderLeft())
            output.Error("the output could not be written");
        code = ExitCode::kFailed;
    }
    return code;
}

}  // namespace tools
