/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options: what a command declares of its command line
 */
#include "commands/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace tools {

void Options::Flag(const std::string& names, bool& target, const std::string& help) {
    m_app.add_flag(names, target, help);
    Record(names, "", help);
}

void Options::Value(const std::string& names, std::string& target, const std::string& placeholder,
                    const std::string& help) {
    m_app.add_option(names, target, help)->type_name(placeholder);
    Record(names, placeholder, help);
}

void Options::Values(const std::string& names, std::vector<std::string>& target, const std::string& placeholder,
                     const std::string& help) {
    m_app.add_option(names, target, help)->type_name(placeholder)->allow_extra_args(false)->take_all();
    Record(names, placeholder, help);
}

void Options::Choice(const std::string& names, std::string& target, const std::vector<std::string>& words,
                     const std::string& help) {
    // The placeholder lists the words already: without a description the help doesn't list them a second time.
    const std::string placeholder = CLI::detail::join(words, "|");
    m_app.add_option(names, target, help)->check(CLI::IsMember(words).description(""))->type_name(placeholder);
    Record(names, placeholder, help);
    m_model.options.back().words = words;
}

void Options::Argument(const std::string& name, std::string& target, const std::string& help) {
    m_app.add_option(name, target, help)->required()->type_name("");
    m_model.arguments.push_back({name, help, true, false, {}});
}

void Options::OptionalArgument(const std::string& name, std::string& target, const std::string& help) {
    m_app.add_option(name, target, help)->type_name("");
    m_model.arguments.push_back({name, help, false, false, {}});
}

void Options::Arguments(const std::string& name, std::vector<std::string>& target, const std::string& help) {
    m_app.add_option(name, target, help)->required()->type_name("")->expected(1, -1);
    m_model.arguments.push_back({name, help, true, true, {}});
}

void Options::OptionalArguments(const std::string& name, std::vector<std::string>& target, const std::string& help) {
    m_app.add_option(name, target, help)->type_name("")->expected(0, -1);
    m_model.arguments.push_back({name, help, false, true, {}});
}

void Options::Rest(const std::string& name, std::vector<std::string>& target, const std::string& help) {
    m_app.fallthrough(false)->prefix_command();
    m_app.parse_complete_callback([&app = m_app, &target] { target = app.remaining(); });
    m_model.arguments.push_back({name, help, false, true, {}});
}

void Options::Offer(const std::string& name, const std::vector<std::string>& words) {
    for (OptionModel& option : m_model.options)
        if (std::ranges::find(option.names, name) != option.names.end())
            option.words = words;
    for (ArgumentModel& argument : m_model.arguments)
        if (argument.name == name)
            argument.words = words;
}

void Options::Exclude(const std::string& one, const std::string& other) {
    m_app.get_option(one)->excludes(m_app.get_option(other));
}

void Options::Notes(const std::string& text) {
    m_model.notes = text;
}

void Options::Example(const std::string& line, const std::string& what) {
    m_model.examples.push_back({line, what});
}

void Options::Record(const std::string& names, const std::string& placeholder, const std::string& help) {
    m_model.options.push_back({CLI::detail::split_names(names), placeholder, help, {}});
}

}  // namespace tools
