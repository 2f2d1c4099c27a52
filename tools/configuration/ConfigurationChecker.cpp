/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what is wrong with a port configuration
 */
#include "configuration/ConfigurationChecker.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "base/BaudRates.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr const char* kManufacturer = "Marlow";

std::vector<std::string> RateWords() {
    std::vector<std::string> words;
    for (const base::BaudRate& rate : base::kBaudRates)
        words.push_back(std::to_string(rate.bitsPerSecond));
    return words;
}

using Ports = std::optional<std::vector<std::string>>;

class Checker {
public:
    Checker(PortConfiguration& configuration, const Ports& ports) : m_configuration(configuration), m_ports(ports) {}

    void Check() {
        for (const PortEntry& entry : m_configuration.entries) {
            CheckId(entry);
            CheckEnabled(entry);
            CheckCamera(entry);
            CheckBaudRate(entry);
        }
        CheckDuplicates();
        CheckWhole();
    }

private:
    void Report(Severity severity, Place place, std::string text, std::string hint = {}) {
        m_configuration.findings.Add({severity, place, std::move(text), std::move(hint)});
    }

    void CheckId(const PortEntry& entry) {
        if (entry.id.text.empty()) {
            Report(Severity::kError, entry.id.IsThere() ? entry.id.place : entry.place,
                   entry.id.IsThere() ? "empty ID: this Port is ignored" : "Port without ID: it is ignored",
                   "'vanto-cl ports' lists the IDs of this machine's ports.");
            return;
        }
        if (!m_ports)
            return;
        if (std::find(m_ports->begin(), m_ports->end(), entry.id.text) == m_ports->end())
            ReportUnknownPort(entry);
    }

    void ReportUnknownPort(const PortEntry& entry) {
        const std::string meant = ClosestWord(entry.id.text, *m_ports);
        const std::string text = fmt::format("this machine has no port '{}'", Printable(entry.id.text));
        if (!meant.empty() && EqualsIgnoringCase(meant, entry.id.text))
            return Report(Severity::kError, entry.id.place, text,
                          fmt::format("did you mean '{}'? Upper and lower case count.", Printable(meant)));
        Report(Severity::kWarning, entry.id.place, text,
               meant.empty() ? "'vanto-cl ports' lists the ports." : DidYouMean(entry.id.text, *m_ports));
    }

    void CheckEnabled(const PortEntry& entry) {
        if (!entry.enabled.IsThere()) {
            Report(Severity::kWarning, entry.place, "Port without Enabled: the port is not used",
                   "Add <Enabled>true</Enabled>.");
            return;
        }
        const std::string& word = entry.enabled.text;
        const bool isNo = EqualsIgnoringCase(word, "no") || EqualsIgnoringCase(word, "false") || word == "0";
        if (!entry.IsEnabled() && !isNo)
            Report(Severity::kError, entry.enabled.place,
                   fmt::format("'{}' is no word for Enabled, so the port is not used", Printable(word)),
                   "Write true, yes or 1 to use the port; false, no or 0 not to.");
    }

    void CheckCamera(const PortEntry& entry) {
        if (entry.IsEnabled() && entry.manufacturer.text != kManufacturer)
            Report(EqualsIgnoringCase(entry.manufacturer.text, kManufacturer) ? Severity::kError : Severity::kWarning,
                   entry.manufacturer.IsThere() ? entry.manufacturer.place : entry.place,
                   entry.manufacturer.text.empty()
                       ? "no Manufacturer: the entry's settings fit no camera"
                       : fmt::format("Manufacturer '{}': the entry's settings fit no camera that is looked for",
                                     Printable(entry.manufacturer.text)),
                   fmt::format("Only cameras whose manufacturer is exactly {} are looked for. The port is used all the "
                               "same, without DeviceSpecificString and BaudRate.",
                               kManufacturer));
        if (!entry.model.text.empty() && entry.family.text.empty())
            Report(Severity::kWarning, entry.model.place, "Model without Family has no effect",
                   "Model is compared only where Family fits.");
    }

    void CheckBaudRate(const PortEntry& entry) {
        const std::string& text = entry.baudRate.text;
        if (text.empty())
            return;
        const std::size_t digits = std::min(text.find_first_of("0123456789"), text.size());
        const std::string_view number = std::string_view(text).substr(digits);
        const std::vector<std::string> rates = RateWords();
        if (std::ranges::find(rates, number) != rates.end())
            return CheckBaudRateSpelling(entry, number);
        Report(Severity::kWarning, entry.baudRate.place,
               fmt::format("'{}' is none of the baud rates of Camera Link", Printable(text)),
               fmt::format("They are {}. Without BaudRate the highest common rate is used.", fmt::join(rates, ", ")));
    }

    /// The text is compared with the names of the entries in the camera's description, case and all.
    void CheckBaudRateSpelling(const PortEntry& entry, std::string_view number) {
        const std::string usual = fmt::format("Baud{}", number);
        if (entry.baudRate.text != usual)
            Report(
                Severity::kWarning, entry.baudRate.place,
                fmt::format("cameras do not call a baud rate '{}', so it is not set", Printable(entry.baudRate.text)),
                fmt::format("Write {}: an entry of the camera's ClSerialPortBaudRate.", usual));
    }

    void CheckDuplicates() {
        std::map<std::tuple<std::string_view, std::string_view, std::string_view, std::string_view>, const PortEntry*>
            seen;
        for (const PortEntry& entry : m_configuration.entries) {
            if (!entry.IsEnabled() || entry.id.text.empty())
                continue;
            const auto [place, isNew] =
                seen.try_emplace({entry.id.text, entry.manufacturer.text, entry.family.text, entry.model.text}, &entry);
            if (!isNew)
                Report(Severity::kWarning, entry.place,
                       fmt::format("this entry is never chosen: the one of line {} fits the same cameras on '{}'",
                                   place->second->place.line, Printable(entry.id.text)));
        }
    }

    void CheckWhole() {
        if (m_configuration.entries.empty())
            Report(Severity::kError, {}, "the file has no Port element, so no port is used",
                   "'vanto-cl config init --force' writes a new file for the ports of this machine.");
        else if (!m_configuration.EnablesAny())
            Report(Severity::kError, {}, "no port is enabled, so no camera is found",
                   "Set <Enabled>true</Enabled> in the Port of a camera.");
    }

    PortConfiguration& m_configuration;
    const Ports& m_ports;
};

}  // namespace

/**
 * \brief Add what is wrong with the entries to a configuration's findings, and sort all of them by place
 * \param[in,out] configuration As it was read
 * \param[in] ports PortIDs of this machine; nothing when they are not known
 *
 * Does nothing to a file that is malformed: what its author meant can't be told.
 */
void CheckPortConfiguration(PortConfiguration& configuration, const Ports& ports) {
    if (configuration.wellFormed)
        Checker(configuration, ports).Check();
    configuration.findings.SortByPlace();
}

}  // namespace tools
