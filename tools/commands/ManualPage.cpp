/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Manual pages of the program and its commands
 */
#include "commands/ManualPage.h"

#include <fmt/format.h>

#include <algorithm>

namespace tools {

namespace {

/// Text for roff: a hyphen is to stay one, and a line that begins with a dot or a quote is no request.
std::string Roff(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '\\')
            result += "\\e";
        else if (letter == '-')
            result += "\\-";
        else if ((letter == '.' || letter == '\'') && (result.empty() || result.back() == '\n'))
            result += std::string("\\&") + letter;
        else
            result += letter;
    }
    return result;
}

/// An argument of a macro: "vanto-cl get".
std::string Quoted(const std::string& text) {
    std::string result = "\"";
    for (const char letter : Roff(text))
        result += letter == '"' ? "\\(dq" : std::string(1, letter);
    return result + "\"";
}

std::string PageOf(const CommandModel& command) {
    std::string name = "vanto-cl-" + command.name;
    std::ranges::replace(name, ' ', '-');
    return name;
}

std::string Title(const std::string& page, const std::string& summary) {
    std::string upper = page;
    std::ranges::transform(upper, upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    std::string begun = summary;
    if (!begun.empty() && begun.front() >= 'A' && begun.front() <= 'Z')
        begun.front() = static_cast<char>(begun.front() - 'A' + 'a');
    return fmt::format(".TH {} 1 \"\" \"vanto-cl {}\" \"Camera Link cameras\"\n.SH NAME\n{} \\- {}\n", Quoted(upper),
                       VANTO_CL_VERSION, Roff(page), Roff(begun));
}

/// A term in bold and what it means, in sentences.
std::string Item(const std::string& term, const std::string& text) {
    return fmt::format(".TP\n.B {}\n{}.\n", Quoted(term), Roff(text));
}

std::string OptionTerm(const OptionModel& option) {
    std::string term;
    for (const std::string& name : option.names)
        term += (term.empty() ? "" : ", ") + name;
    return option.placeholder.empty() ? term : term + " " + option.placeholder;
}

std::string Examples(const std::vector<Example>& examples) {
    std::string text = examples.empty() ? "" : ".SH EXAMPLES\n";
    for (const Example& example : examples)
        text += Item(example.line, example.what);
    return text;
}

constexpr const char* kExitStatus =
    ".SH EXIT STATUS\n0 done, 1 failed, 2 wrong usage, 3 no such device, 130 ended by Ctrl\\-C.\n";

}  // namespace

std::string ManualPageName(const CommandModel& command) {
    return PageOf(command) + ".1";
}

std::string ManualPage(const CommandModel& command) {
    std::string page = Title(PageOf(command), command.summary);
    page += fmt::format(".SH SYNOPSIS\n.B {}\n", Quoted(command.Usage()));
    page += fmt::format(".SH DESCRIPTION\n{}.\n", Roff(command.summary));
    if (!command.notes.empty())
        page += ".PP\n" + Roff(command.notes) + "\n";
    if (!command.arguments.empty())
        page += ".SH ARGUMENTS\n";
    for (const ArgumentModel& argument : command.arguments)
        page += Item(argument.name + (argument.repeats ? "..." : ""), argument.help);
    page += ".SH OPTIONS\n";
    for (const OptionModel& option : command.options)
        page += Item(OptionTerm(option), option.help);
    page += Item("-h, --help", "Print the help and exit");
    return page + kExitStatus + Examples(command.examples) + ".SH SEE ALSO\n.BR vanto\\-cl (1)\n";
}

std::string MainManualPage(const std::vector<CommandModel>& commands) {
    std::string page = Title("vanto-cl", "Camera Link cameras from the command line");
    page += ".SH SYNOPSIS\n.B \"vanto\\-cl [\\-\\-simulate[=N]] COMMAND ...\"\n";
    page +=
        ".SH DESCRIPTION\nFinds the cameras on Camera Link serial lines, reads and changes their features by name, and"
        " takes images. Each command has a page of its own.\n.SH COMMANDS\n";
    std::string seeAlso;
    for (const CommandModel& command : commands) {
        if (!command.IsForPeople())
            continue;
        page += Item(command.Usage().substr(std::string("vanto-cl ").size()), command.summary);
        seeAlso += fmt::format(".BR {} (1),\n", Roff(PageOf(command)));
    }
    page += ".SH OPTIONS\n";
    page += Item("--simulate[=N]", "Start N simulated cameras for this command, two without =N");
    page += Item("--version", "Print the version and exit");
    page += Item("-h, --help", "Print the help and exit");
    page += ".SH ENVIRONMENT\n";
    page += Item("VANTO_LOG", "What the libraries log, for example *:debug");
    page += Item("VANTO_CL_BINDINGS", "The folder of the port configuration file");
    page += Item("VANTO_CL_STATE", "The folder in which cameras that were seen are remembered");
    page += Item("CLSERIALPATH", "Folders of Camera Link serial libraries");
    page += Item("GENICAM_CACHE", "The folder of fetched descriptions");
    page += Item("NO_COLOR", "When it is not empty, nothing is coloured");
    page += kExitStatus;
    page += Examples({{"vanto-cl --simulate list", "Two simulated cameras: nothing else is needed to try everything"},
                      {"vanto-cl list", "The cameras of this machine, or why there are none"},
                      {"vanto-cl doctor", "When you are stuck"}});
    return page + ".SH SEE ALSO\n" + seeAlso + ".BR marlow\\-sim (1)\n";
}

}  // namespace tools
