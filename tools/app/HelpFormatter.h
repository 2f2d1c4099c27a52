/* SPDX-License-Identifier: Apache-2.0 */
/*
 * HelpFormatter: help as wide as the terminal
 */
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tools {

struct CommandModel;

/// Shows an option with an optional value as people write it, and wraps what it says.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(std::size_t columns);

    std::string make_option_name(const CLI::Option* option, bool isPositional) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_footer(const CLI::App* app) const override;

private:
    std::string Row(const std::string& name, const std::string& text) const;

    std::size_t m_columns;
};

/// What the help says below the options of a command: notes and examples, to be wrapped.
std::string FooterOf(const CommandModel& model);

}  // namespace tools
