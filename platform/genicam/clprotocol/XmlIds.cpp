/* SPDX-License-Identifier: Apache-2.0 */
/*
 * XML IDs, and which of several is best
 */

#include "XmlIds.h"

#include <algorithm>
#include <tuple>

#include "ShortForm.h"
#include "Texts.h"
#include "base/Number.h"
#include "base/Text.h"

namespace CLProtocol {

namespace {

constexpr std::uint32_t kSchemaMajor = 1;  // GenApi of GenICam 2.3 reads 1.0 and 1.1, of any sub-minor version
constexpr std::uint32_t kNewestSchemaMinor = 1;
constexpr std::size_t kMaxLength = 4096;

// Reads "<name>.1.2" or "<name>.1.2.3".
std::optional<XmlId::Version> ParseVersion(std::string_view text, std::string_view name, std::size_t minNumbers) {
    const std::vector<std::string> parts = base::Split(text, '.');
    XmlId::Version version{};
    if (parts.front() != name || parts.size() < 1 + minNumbers || parts.size() > 1 + version.size())
        return std::nullopt;
    for (std::size_t index = 1; index < parts.size(); ++index) {
        const auto number = base::ParseNumber<XmlId::Version::value_type>(parts[index]);
        if (!number)
            return std::nullopt;
        version[index - 1] = *number;
    }
    return version;
}

auto Rank(const XmlCandidate& candidate) {
    const std::string& device = candidate.id.device;
    return std::tuple(candidate.id.schema, std::count(device.begin(), device.end(), '#'), device.size(),
                      candidate.id.version, !candidate.file.empty());
}

}  // namespace

/// Takes an XML ID apart; nothing when the text is none.
std::optional<XmlId> XmlId::Parse(std::string_view text) {
    const std::size_t first = text.find('@');
    const std::size_t last = text.rfind('@');
    if (first == std::string_view::npos || first == last || text.size() > kMaxLength)
        return std::nullopt;
    const std::optional<Version> schema = ParseVersion(text.substr(0, first), "SchemaVersion", 2);
    const std::optional<Version> version = ParseVersion(text.substr(last + 1), "XMLVersion", 1);
    if (!schema || !version)
        return std::nullopt;
    return XmlId{std::string(text), *schema, std::string(ShortForm(text.substr(first + 1, last - first - 1))),
                 *version};
}

/// Whether a description is for that camera and of a schema that can be read.
bool IsUsable(const XmlId& id, std::string_view shortDeviceId) {
    return id.schema[0] == kSchemaMajor && id.schema[1] <= kNewestSchemaMinor && !id.device.empty() &&
           BeginsWithTokens(shortDeviceId, id.device, '#');
}

/**
 * \brief Sort candidates as the CLProtocol standard does
 *
 * Higher schema first, then the longer DeviceID part, then the higher XML version. What is equal in all of it is the
 * same description: a file comes before the camera, as it need not be fetched.
 */
void SortBestFirst(std::vector<XmlCandidate>& candidates) {
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const XmlCandidate& left, const XmlCandidate& right) { return Rank(left) > Rank(right); });
}

}  // namespace CLProtocol
