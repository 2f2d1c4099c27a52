/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options: what a command declares of its command line
 */
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tools {

/// Adds options to one command. Keeps the parsing library out of the commands.
class Options {
public:
    explicit Options(CLI::App& app) : m_app(app) {}

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
    /// Two switches that can't be given together.
    void Exclude(const std::string& one, const std::string& other);
    /// Lines below the options in the help: examples, notes.
    void Footer(const std::string& text);

private:
    CLI::App& m_app;
};

}  // namespace tools
