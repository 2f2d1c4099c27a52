/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options: what a command declares of its command line
 */
#pragma once

#include <string>
#include <vector>

#include "commands/CommandModel.h"

namespace CLI {
class App;
}

namespace tools {

/// Adds options to one command, and records them for help, manual pages and completion. Keeps the parsing library out
/// of the commands.
class Options {
public:
    Options(CLI::App& app, CommandModel& model) : m_app(app), m_model(model) {}

    /// A switch such as "--json" or "-f,--force".
    void Flag(const std::string& names, bool& target, const std::string& help);
    /// An option with a value: "-o,--output", shown as "-o FILE".
    void Value(const std::string& names, std::string& target, const std::string& placeholder, const std::string& help);
    /// An option that may be given several times, each time with one value.
    void Values(const std::string& names, std::vector<std::string>& target, const std::string& placeholder,
                const std::string& help);
    /// An option whose value is one of a few words.
    void Choice(const std::string& names, std::string& target, const std::vector<std::string>& words,
                const std::string& help);
    /// A required argument without a dash.
    void Argument(const std::string& name, std::string& target, const std::string& help);
    /// An argument without a dash that may be missing; after all others.
    void OptionalArgument(const std::string& name, std::string& target, const std::string& help);
    /// One or more required arguments without a dash.
    void Arguments(const std::string& name, std::vector<std::string>& target, const std::string& help);
    /// Any number of arguments without a dash, none among them.
    void OptionalArguments(const std::string& name, std::vector<std::string>& target, const std::string& help);
    /// Everything behind the first word without a dash, options of whatever kind among it.
    void Rest(const std::string& name, std::vector<std::string>& target, const std::string& help);
    /// Words that the completion offers for an option or an argument; others may be given, too.
    void Offer(const std::string& name, const std::vector<std::string>& words);
    /// Two switches that can't be given together.
    void Exclude(const std::string& one, const std::string& other);
    /// What is to be known beside the options: sentences, wrapped where they are shown.
    void Notes(const std::string& text);
    /// A line as it must be typed, and what it does.
    void Example(const std::string& line, const std::string& what);

private:
    void Record(const std::string& names, const std::string& placeholder, const std::string& help);

    CLI::App& m_app;
    CommandModel& m_model;
};

}  // namespace tools
