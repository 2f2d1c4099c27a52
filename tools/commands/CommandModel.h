/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the commands take, as help, manual pages and the completion of shells show it
 */
#pragma once

#include <string>
#include <vector>

namespace tools {

/// An option: "-o", "--output" with the placeholder FILE; a switch has none.
struct OptionModel {
    std::vector<std::string> names;
    std::string placeholder;
    std::string help;
    std::vector<std::string> words;  ///< what it takes, where these are few
};

/// An argument without a dash. Its name tells what stands there: DEVICE, NAME, NAME=VALUE, COMMAND, FILE, FOLDER.
struct ArgumentModel {
    std::string name;
    std::string help;
    bool isRequired = true;
    bool repeats = false;
    std::vector<std::string> words;  ///< what it takes, where these are few
};

/// A line to type, and what it does.
struct Example {
    std::string line;
    std::string what;
};

/// A command as it declares itself.
struct CommandModel {
    std::string name;  ///< "get", "config path"
    std::string summary;
    std::vector<OptionModel> options;
    std::vector<ArgumentModel> arguments;
    std::string notes;
    std::vector<Example> examples;

    /// Commands for scripts of ours have no summary.
    bool IsForPeople() const { return !summary.empty(); }
    /// "vanto-cl get [OPTIONS] DEVICE NAME..."
    std::string Usage() const;
};

/// The commands in the order of the help.
std::vector<CommandModel> CommandModels();

}  // namespace tools
