/* SPDX-License-Identifier: Apache-2.0 */
/*
 * HelpFormatter: help as wide as the terminal
 */
#include "app/HelpFormatter.h"

#include "commands/CommandModel.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr std::size_t kHelpColumn = 28;

}  // namespace

HelpFormatter::HelpFormatter(std::size_t columns) : m_columns(columns) {
    column_width(kHelpColumn);
    label("SUBCOMMAND", "COMMAND");
}

std::string HelpFormatter::make_option_name(const CLI::Option* option, bool isPositional) const {
    std::string name = CLI::Formatter::make_option_name(option, isPositional);
    if (const std::size_t brace = name.find('{'); brace != std::string::npos)
        name.replace(brace, std::string::npos, "[=N]");
    return name;
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    return Row(make_option_name(option, isPositional) + make_option_opts(option), make_option_desc(option));
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
    return Row(command->get_display_name(), command->get_description());
}

// A name that reaches into the column of the texts has its own on the next line.
std::string HelpFormatter::Row(const std::string& name, const std::string& text) const {
    const std::string indent(kHelpColumn, ' ');
    std::string row = "  " + name;
    if (row.size() + 1 > kHelpColumn)
        row += "\n" + indent;
    else
        row.resize(kHelpColumn, ' ');
    return row + Wrapped(text, m_columns, indent, kHelpColumn) + "\n";
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    const std::string footer = app->get_footer();
    return footer.empty() ? footer : Wrapped(footer, m_columns, "") + "\n";
}

std::string FooterOf(const CommandModel& model) {
    std::string footer = model.notes;
    for (const Example& example : model.examples)
        footer += (footer.empty() ? "" : "\n") +
                  std::string(&example == &model.examples.front() ? "\nExamples:\n" : "") + "  " + example.line +
                  "\n      " + example.what;
    return footer;
}

}  // namespace tools
