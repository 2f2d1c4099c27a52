/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names of cameras in CLProtocol's form, and what a host asks for with one
 */

#include "DeviceId.h"

#include <fmt/format.h>

#include <vector>

#include "DriverError.h"
#include "base/Text.h"
#include "base/TokenEscape.h"

namespace marlow {

namespace {

// Short forms: manufacturer, family, model, [version,] serial number. Long forms have the driver's folder and file
// before them.
constexpr std::size_t kDriverTokens = 2;
constexpr std::size_t kMostShortTokens = 5;
constexpr std::size_t kSerialFrom = 4;

std::vector<std::string> TokensOf(std::string_view id) {
    std::vector<std::string> tokens = base::Split(id, kTokenSeparator);
    for (std::string& token : tokens)
        token = base::UnescapeToken(token);
    return tokens;
}

}  // namespace

/// Manufacturer, family, model, version and serial number: all five, since hosts differ in what they take the last of
/// four for. What is empty keeps its place; separators within the tokens are escaped.
std::string CameraName::ToShortDeviceId() const {
    using base::EscapeToken;
    return fmt::format("{1}{0}{2}{0}{3}{0}{4}{0}{5}", kTokenSeparator, EscapeToken(manufacturer), EscapeToken(family),
                       EscapeToken(model), EscapeToken(version), EscapeToken(serial));
}

/// Whether both name one camera, be it with another version.
bool CameraName::IsSameCameraAs(const CameraName& other) const {
    return manufacturer == other.manufacturer && family == other.family && model == other.model &&
           serial == other.serial;
}

/**
 * \brief Understand what a host asks for
 * \param[in] templateOrDeviceId Short or long form, cut off anywhere behind the manufacturer
 *
 * A version between model and serial number is not compared: new firmware leaves the camera the same.
 *
 * \throw DriverError CLP_INVALID_DEVICEID, not for one of this driver's cameras
 */
DeviceRequest::DeviceRequest(std::string_view templateOrDeviceId) {
    auto tokens = TokensOf(templateOrDeviceId);
    if (tokens.front() != kManufacturer && tokens.size() > kDriverTokens && tokens[kDriverTokens] == kManufacturer)
        tokens.erase(tokens.begin(), tokens.begin() + kDriverTokens);
    if (tokens.front() != kManufacturer || tokens.size() > kMostShortTokens)
        throw DriverError(CLProtocol::CLP_INVALID_DEVICEID,
                          fmt::format("'{:.200}' is no DeviceID or template of this driver.", templateOrDeviceId));
    m_manufacturer = tokens[0];
    if (tokens.size() > 1)
        m_family = tokens[1];
    if (tokens.size() > 2)
        m_model = tokens[2];
    if (tokens.size() >= kSerialFrom)
        m_serial = tokens.back();
}

bool DeviceRequest::Fits(const CameraName& name) const {
    return name.manufacturer == m_manufacturer && (!m_family || *m_family == name.family) &&
           (!m_model || *m_model == name.model) && (!m_serial || *m_serial == name.serial);
}

/// The identifier that the camera asked for would return; as far as the request goes.
std::string DeviceRequest::ShortDeviceId() const {
    std::string text = m_manufacturer;
    for (const auto& token : {m_family, m_model, m_serial}) {
        if (token)
            text += kTokenSeparator + base::EscapeToken(*token);
    }
    return text;
}

}  // namespace marlow
