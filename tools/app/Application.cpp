/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl: chooses the command, runs it, reports how it ended
 */
#include "app/Application.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "cameras/Simulation.h"
#include "commands/Command.h"
#include "commands/Options.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Interruption.h"

namespace tools {

namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 no such device.\n"
    "'vanto-cl COMMAND --help' explains a command. VANTO_LOG=*:debug shows what the libraries do.";

/// Shows the option with an optional value as people write it.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
        std::string name = CLI::Formatter::make_option_name(option, isPositional);
        if (const std::size_t brace = name.find('{'); brace != std::string::npos)
            name.replace(brace, std::string::npos, "[=N]");
        return name;
    }
};

/// The command line: an option parser with a sub-parser for each command of the table.
class CommandLine {
public:
    CommandLine() : m_app("Camera Link cameras from the command line", "vanto-cl") {
        m_app.set_version_flag("--version", "vanto-cl " VANTO_CL_VERSION, "Print the version and exit");
        m_app.set_help_flag("-h,--help", "Print this help and exit");
        m_simulateOption =
            m_app.add_flag("--simulate{2}", m_simulate, "Start N simulated cameras for this command (2 without =N)");
        const auto formatter = std::make_shared<HelpFormatter>();
        formatter->column_width(kHelpColumn);
        formatter->label("SUBCOMMAND", "COMMAND");
        m_app.formatter(formatter);
        m_app.footer(kExitCodes);
        // A second word that is a command's name is an argument: files and cameras may be called so.
        m_app.require_subcommand(0, 1);
        // Else a path that begins with a slash is an option on Windows.
        m_app.allow_windows_style_options(false);
        for (const CommandEntry& entry : CommandTable())
            Add(entry);
    }

    /// Reads the arguments; throws CLI::ParseError.
    void Parse(int count, const char* const* arguments) {
        m_app.parse(count, arguments);
        if (m_chosen == nullptr)
            throw CLI::RequiredError("a command");
        if (Simulates() && (m_simulate < 1 || m_simulate > Simulation::kMostCameras))
            throw CLI::ValidationError("--simulate", fmt::format("1 to {} cameras", Simulation::kMostCameras));
    }

    CLI::App& App() { return m_app; }
    Command& Chosen() { return *m_chosen; }
    bool Simulates() const { return m_simulateOption->count() > 0; }
    int SimulatedCameras() const { return m_simulate; }

    /// The command that asks for the help of what stands in the line.
    std::string HelpHere() {
        std::string words = "vanto-cl";
        for (const CLI::App* place = &m_app; !place->get_subcommands().empty();) {
            place = place->get_subcommands().front();
            words += " " + place->get_name();
        }
        return words + " --help";
    }

    /// The commands and options at the place where an unknown word stands, for a suggestion.
    std::vector<std::string> NamesBeside() {
        const CLI::App* place = &m_app;
        while (!place->get_subcommands().empty())
            place = place->get_subcommands().front();
        std::vector<std::string> names;
        for (const CLI::App* command : place->get_subcommands({}))
            names.push_back(command->get_name());
        for (const CLI::Option* option : place->get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
        return names;
    }

private:
    static constexpr std::size_t kHelpColumn = 28;
    static constexpr const char* kGroup = "Commands";

    void Add(const CommandEntry& entry) {
        std::string name = entry.name;
        CLI::App* parent = &m_app;
        if (const std::size_t blank = name.find(' '); blank != std::string::npos) {
            parent = Group(name.substr(0, blank));
            name.erase(0, blank + 1);
        }
        CLI::App* app = parent->add_subcommand(name, entry.summary);
        app->group(*entry.summary != '\0' ? kGroup : "");
        m_commands.push_back(entry.make());
        // '--simulate' may stand behind the command, too.
        app->fallthrough();
        Command* command = m_commands.back().get();
        Options options(*app);
        command->Declare(options);
        app->callback([this, command] { m_chosen = command; });
    }

    CLI::App* Group(const std::string& name) {
        if (const auto known = m_groups.find(name); known != m_groups.end())
            return known->second;
        const auto groups = CommandGroups();
        const auto group =
            std::find_if(groups.begin(), groups.end(), [&](const CommandGroup& one) { return name == one.name; });
        CLI::App* app = m_app.add_subcommand(name, group != groups.end() ? group->summary : "");
        app->group(kGroup);
        app->require_subcommand(1);
        m_groups[name] = app;
        return app;
    }

    CLI::App m_app;
    std::map<std::string, CLI::App*> m_groups;
    std::vector<std::unique_ptr<Command>> m_commands;
    Command* m_chosen = nullptr;
    CLI::Option* m_simulateOption = nullptr;
    int m_simulate = 0;
};

/// Says what is wrong with a command line; help and version are no errors.
ExitCode Report(CommandLine& line, const CLI::ParseError& error, int count, const char* const* arguments,
                Output& output) {
    if (error.get_exit_code() == 0) {
        std::ostringstream text;
        line.App().exit(error, text, text);
        output.Print(text.str());
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
    output.Error(Interruption::Requested() ? "interrupted" : text);
    return Interruption::Requested() ? ExitCode::kInterrupted : ExitCode::kFailed;
}

ExitCode RunChosen(CommandLine& line, Output& output) {
    std::optional<Simulation> simulation;
    if (line.Simulates())
        simulation.emplace(line.SimulatedCameras());
    return line.Chosen().Run(output);
}

}  // namespace

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
        CommandLine line;
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
        output.Error("the output could not be written");
        code = ExitCode::kFailed;
    }
    return code;
}

}  // namespace tools
