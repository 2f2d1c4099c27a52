/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the port configuration file with the place of everything in it
 */
#include "configuration/ConfigurationReader.h"

#include <expat.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

#include "error/ExitCode.h"
#include "output/Text.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

constexpr std::size_t kLongestValue = 4096;  // of a child's text; anything longer is cut and reported
constexpr std::size_t kDeepest = 1000;
constexpr std::size_t kMostEntries = 10'000;
constexpr std::size_t kFirstPiece = 64 * 1024;
constexpr std::size_t kLargestPiece = 16 * 1024 * 1024;

struct Field {
    const char* name;
    PlacedValue PortEntry::*value;
};
constexpr std::array<Field, 7> kFields{{{"ID", &PortEntry::id},
                                        {"Enabled", &PortEntry::enabled},
                                        {"Manufacturer", &PortEntry::manufacturer},
                                        {"Family", &PortEntry::family},
                                        {"Model", &PortEntry::model},
                                        {"DeviceSpecificString", &PortEntry::deviceSpecificString},
                                        {"BaudRate", &PortEntry::baudRate}}};

const std::vector<std::string>& FieldNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> result;
        for (const Field& field : kFields)
            result.emplace_back(field.name);
        return result;
    }();
    return names;
}

/// Follows the parser's events. Text is collected only inside a child of a Port.
class Reader {
public:
    explicit Reader(PortConfiguration& configuration)
        : m_configuration(configuration), m_parser(XML_ParserCreate(nullptr)) {
        if (m_parser == nullptr)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), &Reader::OnStart, &Reader::OnEnd);
        XML_SetCharacterDataHandler(m_parser.get(), &Reader::OnText);
    }

    /// Passes a piece of the file on; false when the rest need not be read.
    bool Feed(std::string_view piece, bool last) {
        if (XML_Parse(m_parser.get(), piece.data(), static_cast<int>(piece.size()), last ? 1 : 0) == XML_STATUS_OK)
            return true;
        ReportMalformed();
        return false;
    }

private:
    struct FreeParser {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };
    /// A Port whose end has not come yet. They may be nested; each is an entry of its own.
    struct OpenPort {
        OpenPort(std::size_t entryIndex, std::size_t elementDepth) : entry(entryIndex), depth(elementDepth) {}
        std::size_t entry;
        std::size_t depth;
        bool reportedText = false;
        std::size_t child = kFields.size();  ///< the field whose text is being collected
        std::string text;
    };

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        static_cast<Reader*>(self)->Guarded([&](Reader& reader) { reader.Start(name, attributes); });
    }
    static void XMLCALL OnEnd(void* self, const XML_Char*) {
        static_cast<Reader*>(self)->Guarded([](Reader& reader) { reader.End(); });
    }
    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        static_cast<Reader*>(self)->Guarded([&](Reader& reader) {
            reader.Text({text, static_cast<std::size_t>(length)});
        });
    }

    /// The parser is C: nothing may be thrown through it.
    template <class Action>
    void Guarded(Action action) noexcept {
        try {
            action(*this);
        } catch (...) {
            m_outOfMemory = true;
            XML_StopParser(m_parser.get(), XML_FALSE);
        }
    }

    Place Here() const {
        return {XML_GetCurrentLineNumber(m_parser.get()), XML_GetCurrentColumnNumber(m_parser.get()) + 1};
    }

    void Report(Severity severity, std::string text, std::string hint = {}) {
        m_configuration.findings.Add({severity, Here(), std::move(text), std::move(hint)});
    }

    void Start(std::string_view name, const XML_Char** attributes) {
        ++m_depth;
        if (m_depth > kDeepest)
            return Stop(fmt::format("elements are nested more than {} deep", kDeepest));
        if (name == "Port")
            StartPort(attributes);
        else if (!m_ports.empty())
            StartInsidePort(name);
        else if (m_depth > 1)
            StartOutsidePort(name);
    }

    void Stop(std::string why) {
        m_whyStopped = std::move(why);
        XML_StopParser(m_parser.get(), XML_FALSE);
    }

    void StartPort(const XML_Char** attributes) {
        if (attributes[0] != nullptr)
            Report(Severity::kWarning, fmt::format("attribute '{}' of Port is ignored", Printable(attributes[0])),
                   "Settings are elements inside Port.");
        if (!m_ports.empty())
            Report(Severity::kWarning, "a Port inside another Port is an entry of its own",
                   "Close the Port above first.");
        if (m_configuration.entries.size() == kMostEntries)
            return Stop(fmt::format("more than {} Port elements", kMostEntries));
        m_ports.emplace_back(m_configuration.entries.size(), m_depth);
        m_configuration.entries.emplace_back().place = Here();
    }

    void StartInsidePort(std::string_view name) {
        OpenPort& port = m_ports.back();
        if (m_depth != port.depth + 1) {
            if (port.child < kFields.size())
                Report(Severity::kWarning, fmt::format("element '{}' inside {}: only its text counts", Printable(name),
                                                       kFields[port.child].name));
            return;
        }
        for (std::size_t index = 0; index < kFields.size(); ++index) {
            const bool isId = index == 0;
            if (name == kFields[index].name || (isId && EqualsIgnoringCase(name, "ID")))
                return StartField(port, index);
        }
        ReportUnknownChild(name);
    }

    void StartField(OpenPort& port, std::size_t index) {
        PlacedValue& value = m_configuration.entries[port.entry].*kFields[index].value;
        if (value.IsThere())
            Report(Severity::kWarning, fmt::format("second {} in this Port; it replaces the one of line {}",
                                                   kFields[index].name, value.place.line));
        value = {{}, Here()};
        port.child = index;
        port.text.clear();
    }

    void ReportUnknownChild(std::string_view name) {
        const std::string meant = ClosestWord(name, FieldNames());
        if (!meant.empty() && EqualsIgnoringCase(name, meant))
            Report(Severity::kError, fmt::format("element '{}' is ignored: its name is {}", Printable(name), meant),
                   "Upper and lower case count.");
        else
            Report(meant.empty() ? Severity::kWarning : Severity::kError,
                   fmt::format("unknown element '{}' in Port is ignored", Printable(name)),
                   DidYouMean(name, FieldNames()));
    }

    void StartOutsidePort(std::string_view name) {
        static const std::vector<std::string> kPort{"Port"};
        if (EqualsIgnoringCase(name, "Port"))
            Report(Severity::kError, fmt::format("element '{}' is ignored: its name is Port", Printable(name)),
                   "Upper and lower case count.");
        else if (!ClosestWord(name, kPort).empty())
            Report(Severity::kError, fmt::format("unknown element '{}' is ignored", Printable(name)),
                   DidYouMean(name, kPort));
        else if (ClosestWord(name, FieldNames()) == name)
            Report(Severity::kError, fmt::format("{} outside a Port is ignored", Printable(name)));
    }

    void Text(std::string_view text) {
        if (m_ports.empty())
            return;
        OpenPort& port = m_ports.back();
        if (port.child < kFields.size()) {
            port.text.append(text.substr(0, kLongestValue + 1 - std::min(port.text.size(), kLongestValue + 1)));
        } else if (m_depth == port.depth && !port.reportedText && !Trimmed(text).empty()) {
            port.reportedText = true;
            Report(Severity::kWarning, "text directly inside Port is ignored");
        }
    }

    void End() {
        if (!m_ports.empty()) {
            OpenPort& port = m_ports.back();
            if (m_depth == port.depth)
                m_ports.pop_back();
            else if (m_depth == port.depth + 1 && port.child < kFields.size())
                EndField(port);
        }
        --m_depth;
    }

    void EndField(OpenPort& port) {
        PlacedValue& value = m_configuration.entries[port.entry].*kFields[port.child].value;
        if (port.text.size() > kLongestValue)
            m_configuration.findings.Add(
                {Severity::kWarning,
                 value.place,
                 fmt::format("the text of {} is longer than {} bytes", kFields[port.child].name, kLongestValue),
                 {}});
        value.text = Trimmed(std::string_view(port.text).substr(0, kLongestValue));
        port.child = kFields.size();
    }

    void ReportMalformed() {
        if (m_outOfMemory)
            throw std::bad_alloc();
        const XML_Error error = XML_GetErrorCode(m_parser.get());
        const std::string text = m_whyStopped.empty() ? XML_ErrorString(error) : m_whyStopped;
        // Findings from before the fault stay: they may well be its cause.
        m_configuration.findings.Add({Severity::kError, Here(), "malformed XML: " + text, HintFor(error)});
    }

    static std::string HintFor(XML_Error error) {
        switch (error) {
            case XML_ERROR_INVALID_TOKEN:
                return "Look for '&' or '<' in a text (write &amp; and &lt;), and for letters that are not in the "
                       "file's encoding.";
            case XML_ERROR_UNKNOWN_ENCODING:
            case XML_ERROR_INCORRECT_ENCODING:
                return "Save the file as UTF-8.";
            case XML_ERROR_XML_DECL:
            case XML_ERROR_MISPLACED_XML_PI:
                return "Nothing, not even a blank or an empty line, may stand before '<?xml'.";
            case XML_ERROR_TAG_MISMATCH:
                return "Each element ends with its own name: <Port> ... </Port>.";
            default:
                return {};
        }
    }

    PortConfiguration& m_configuration;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> m_parser;
    std::vector<OpenPort> m_ports;
    std::size_t m_depth = 0;
    std::string m_whyStopped;
    bool m_outOfMemory = false;
};

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

}  // namespace

/**
 * \brief Read a port configuration file
 * \param[in] path The file
 *
 * Entries are found as the transport layer finds them. What it would silently ignore is reported as a finding, and so
 * is malformed XML; the entries above the fault are kept. Memory stays in proportion to the number of entries, not to
 * the file's size, and entities that multiply are refused by the parser.
 *
 * \throw ToolError The file can't be opened or read
 */
PortConfiguration ReadPortConfiguration(const std::filesystem::path& path) {
    const std::string refused = WhyNotReadable(path);
    const std::unique_ptr<std::FILE, CloseFile> file(refused.empty() ? std::fopen(path.string().c_str(), "rb")
                                                                     : nullptr);
    if (file == nullptr)
        throw ToolError(fmt::format("can't read '{}': {}", path.string(),
                                    refused.empty() ? std::generic_category().message(errno) : refused));
    PortConfiguration configuration;
    Reader reader(configuration);
    std::vector<char> buffer(kFirstPiece);
    // Growing pieces: the parser begins a long comment anew with each piece.
    for (bool more = true; more; buffer.resize(std::min(buffer.size() * 2, kLargestPiece))) {
        const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
        if (std::ferror(file.get()) != 0)
            throw ToolError(fmt::format("can't read '{}': {}", path.string(), std::generic_category().message(errno)));
        more = count == buffer.size();
        if (!reader.Feed({buffer.data(), count}, !more))
            return configuration;
    }
    configuration.wellFormed = true;
    return configuration;
}

/// The same; a file that does not exist is an error that says how to make one.
PortConfiguration ReadExistingConfiguration(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        throw ToolError(fmt::format("there is no port configuration file '{}'", path.string()),
                        "'vanto-cl config init' writes one for the ports of this machine.");
    return ReadPortConfiguration(path);
}

}  // namespace tools
