/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CompletionLine: what is meant by the place in a command line where somebody presses TAB
 */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "commands/CommandModel.h"

namespace tools {

/// A word to offer, and what it is; some shells show that.
struct Offer {
    std::string word;
    std::string what;
};

/// A command line up to the word that is being typed, taken apart by what the commands declare.
class CompletionLine {
public:
    /// \param[in] words Behind the program's name; the last one is being typed and may be empty
    CompletionLine(const std::vector<CommandModel>& commands, const std::vector<std::string>& words);

    /// The word that is being typed.
    const std::string& Typed() const noexcept { return m_typed; }
    /// The cameras to simulate, as "--simulate" asks; 0 for none.
    int SimulatedCameras() const noexcept { return m_simulated; }
    /// What stands here, as it is called in the help: "DEVICE", "NAME", "FILE" ...; empty where only words do.
    const std::string& Placeholder() const noexcept { return m_placeholder; }
    /// The words that may stand here whatever cameras there are; not only those that begin as what is typed.
    const std::vector<Offer>& Words() const noexcept { return m_words; }
    /// The DEVICE that stands before; empty for none.
    const std::string& Device() const noexcept { return m_device; }

private:
    void Skip(const std::string& word);
    void SkipInCommand(const std::string& word);
    void Decide();
    void OfferCommands();
    void OfferOptions();

    const std::vector<CommandModel>& m_commands;
    std::string m_typed;
    std::string m_name;                       // of the command, as far as it was typed
    const CommandModel* m_command = nullptr;  // when it is whole
    const OptionModel* m_option = nullptr;    // whose value stands here
    std::size_t m_arguments = 0;              // that stand before
    int m_simulated = 0;
    std::string m_device;
    std::string m_placeholder;
    std::vector<Offer> m_words;
};

}  // namespace tools
