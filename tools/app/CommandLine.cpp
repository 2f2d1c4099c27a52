/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CommandLine: what stands behind "vanto-cl"
 */
#include "app/CommandLine.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <sstream>

#include "app/HelpFormatter.h"
#include "cameras/Simulation.h"
#include "commands/Options.h"

namespace tools {

namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 failed, 2 wrong usage, 3 no such device.\n"
    "'vanto-cl help COMMAND' explains a command. VANTO_LOG=*:debug shows what the libraries do.";
constexpr const char* kGroup = "Commands";

}  // namespace

class CommandLine::Impl {
public:
    explicit Impl(std::size_t columns) : formatter(std::make_shared<HelpFormatter>(columns)) {
        app.set_version_flag("--version", "vanto-cl " VANTO_CL_VERSION, "Print the version and exit");
        app.set_help_flag("-h,--help", "Print this help and exit");
        simulateOption =
            app.add_flag("--simulate{2}", simulate, "Start N simulated cameras for this command (2 without =N)");
        app.formatter(formatter);
        app.footer(kExitCodes);
        // A second word that is a command's name is an argument: files and cameras may be called so.
        app.require_subcommand(0, 1);
        // Else a path that begins with a slash is an option on Windows.
        app.allow_windows_style_options(false);
        for (const CommandEntry* entry : CommandTable())
            Add(*entry);
    }

    const CLI::App* Place() const {
        const CLI::App* place = &app;
        while (!place->get_subcommands().empty())
            place = place->get_subcommands().front();
        return place;
    }

    CLI::App app{"Camera Link cameras from the command line", "vanto-cl"};
    std::shared_ptr<HelpFormatter> formatter;
    Command* chosen = nullptr;
    CLI::Option* simulateOption = nullptr;
    int simulate = 0;
    std::vector<CommandModel> models;

private:
    void Add(const CommandEntry& entry) {
        std::string name = entry.name;
        CLI::App* parent = &app;
        if (const std::size_t blank = name.find(' '); blank != std::string::npos) {
            parent = Group(name.substr(0, blank));
            name.erase(0, blank + 1);
        }
        CLI::App* place = parent->add_subcommand(name, entry.summary);
        place->group(*entry.summary != '\0' ? kGroup : "");
        // '--simulate' may stand behind the command, too.
        place->fallthrough();
        m_commands.push_back(entry.make());
        Command* command = m_commands.back().get();
        models.emplace_back();
        models.back().name = entry.name;
        models.back().summary = entry.summary;
        Options options(*place, models.back());
        command->Declare(options);
        place->footer(FooterOf(models.back()));
        place->callback([this, command] { chosen = command; });
    }

    CLI::App* Group(const std::string& name) {
        if (const auto known = m_groups.find(name); known != m_groups.end())
            return known->second;
        const auto groups = CommandGroups();
        const auto group = std::ranges::find(groups, name, &CommandGroup::name);
        CLI::App* place = app.add_subcommand(name, group != groups.end() ? group->summary : "");
        place->group(kGroup);
        place->require_subcommand(1);
        m_groups[name] = place;
        return place;
    }

    std::map<std::string, CLI::App*> m_groups;
    std::vector<std::unique_ptr<Command>> m_commands;
};

CommandLine::CommandLine(std::size_t columns) : m_impl(std::make_unique<Impl>(columns)) {}
CommandLine::~CommandLine() = default;

void CommandLine::Parse(int count, const char* const* arguments) {
    m_impl->app.parse(count, arguments);
    if (m_impl->chosen == nullptr)
        throw CLI::RequiredError("a command");
    if (Simulates() && (m_impl->simulate < 1 || m_impl->simulate > Simulation::kMostCameras))
        throw CLI::ValidationError("--simulate", fmt::format("1 to {} cameras", Simulation::kMostCameras));
}

Command& CommandLine::Chosen() const noexcept {
    return *m_impl->chosen;
}
bool CommandLine::Simulates() const {
    return m_impl->simulateOption->count() > 0;
}
int CommandLine::SimulatedCameras() const noexcept {
    return m_impl->simulate;
}
std::vector<CommandModel> CommandLine::Models() const {
    return m_impl->models;
}

std::string CommandLine::HelpOf(const std::vector<std::string>& words) const {
    const CLI::App* place = &m_impl->app;
    std::string prefix;
    for (const std::string& word : words) {
        const auto commands = place->get_subcommands({});
        const auto command = std::ranges::find(commands, word, [](const CLI::App* one) { return one->get_name(); });
        if (command == commands.end())
            throw ToolError(fmt::format("there is no command '{}'", word), "'vanto-cl help' lists the commands.",
                            ExitCode::kUsage);
        prefix += (prefix.empty() ? "" : " ") + place->get_name();
        place = *command;
    }
    return place->help(prefix);
}

std::string CommandLine::Asked(const std::exception& request) const {
    std::ostringstream text;
    m_impl->app.exit(dynamic_cast<const CLI::Error&>(request), text, text);
    return text.str();
}

std::string CommandLine::HelpHere() const {
    std::string words = "vanto-cl";
    for (const CLI::App* place = &m_impl->app; !place->get_subcommands().empty();) {
        place = place->get_subcommands().front();
        words += " " + place->get_name();
    }
    return words + " --help";
}

std::vector<std::string> CommandLine::NamesBeside() const {
    const CLI::App* place = m_impl->Place();
    std::vector<std::string> names;
    for (const CLI::App* command : place->get_subcommands({}))
        names.push_back(command->get_name());
    for (const CLI::Option* option : place->get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

}  // namespace tools
