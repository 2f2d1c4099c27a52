/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options: what a command declares of its command line
 */
#include "commands/Options.h"

#include <CLI/CLI.hpp>

namespace tools {

void Options::Flag(const std::string& names, bool& target, const std::string& help) {
    m_app.add_flag(names, target, help);
}

void Options::Value(const std::string& names, std::string& target, const std::string& placeholder,
                    const std::string& help) {
    m_app.add_option(names, target, help)->type_name(placeholder);
}

void Options::Values(const std::string& names, std::vector<std::string>& target, const std::string& placeholder,
                     const std::string& help) {
    m_app.add_option(names, target, help)->type_name(placeholder)->allow_extra_args(false)->take_all();
}

void Options::Choice(const std::string& names, std::string& target, const std::vector<std::string>& words,
                     const std::string& help) {
    // The placeholder lists the words already: without a description the help doesn't list them a second time.
    m_app.add_option(names, target, help)
        ->check(CLI::IsMember(words).description(""))
        ->type_name(CLI::detail::join(words, "|"));
}

void Options::Argument(const std::string& name, std::string& target, const std::string& help) {
    m_app.add_option(name, target, help)->required()->type_name("");
}

void Options::OptionalArgument(const std::string& name, std::string& target, const std::string& help) {
    m_app.add_option(name, target, help)->type_name("");
}

void Options::Arguments(const std::string& name, std::vector<std::string>& target, const std::string& help) {
    m_app.add_option(name, target, help)->required()->type_name("")->expected(1, -1);
}

void Options::Exclude(const std::string& one, const std::string& other) {
    m_app.get_option(one)->excludes(m_app.get_option(other));
}

void Options::Footer(const std::string& text) {
    m_app.footer(text);
}

}  // namespace tools
