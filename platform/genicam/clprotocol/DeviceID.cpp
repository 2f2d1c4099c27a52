/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CDeviceID
 */

#include "CLProtocol/DeviceID.h"

#include <iterator>

#include "Base/GCUtilities.h"
#include "DriverLocations.h"
#include "Texts.h"
#include "base/Text.h"
#include "base/TokenEscape.h"

namespace CLProtocol {

namespace {

constexpr char kSeparator = '#';
constexpr std::size_t kFirstShortToken = 2;
constexpr std::size_t kMinTokens = 3;  // no template is cut off further than the manufacturer
constexpr std::size_t kMaxTokens = 7;
constexpr std::size_t kTokensWithVersion = 7;

// Drivers of others may mean the escapes as they stand.
constexpr std::string_view kEscapingDriver = "MarlowCLProtocol";

// What the camera's register says.
GenICam::gcstring Plain(const GenICam::gcstring& driver, const GenICam::gcstring& token) {
    const bool isEscaped = driver.view().find(kEscapingDriver) != std::string_view::npos;
    return isEscaped ? GenICam::gcstring(base::UnescapeToken(token.view())) : token;
}

}  // namespace

/// The sign between tokens.
GenICam::gcstring CDeviceID::GetTokenSeperator() {
    return GenICam::gcstring(1, kSeparator);
}

/**
 * \brief Take a full DeviceID or DeviceID template apart
 * \return False when it has less than three or more than seven tokens, or control characters; then all getters yield
 * the empty string
 */
bool CDeviceID::FromString(const GenICam::gcstring& deviceId) {
    *this = CDeviceID();
    const std::vector<std::string> tokens = base::Split(deviceId.view(), kSeparator);
    if (tokens.size() < kMinTokens || tokens.size() > kMaxTokens || HasControlCharacters(deviceId.view()))
        return false;
    GenICam::gcstring* const order[] = {&m_driverDirectory, &m_driverFileName, &m_manufacturer, &m_family, &m_model};
    for (std::size_t index = 0; index < tokens.size() && index < std::size(order); ++index)
        *order[index] = tokens[index];
    if (tokens.size() == kTokensWithVersion)
        m_version = tokens[5];
    if (tokens.size() > std::size(order))
        m_serialNumber = tokens.back();
    m_tokens = tokens.size();
    return true;
}

/// The text that was parsed; empty when there is none.
GenICam::gcstring CDeviceID::ToString() const {
    return m_tokens == 0
               ? GenICam::gcstring()
               : m_driverDirectory + GetTokenSeperator() + m_driverFileName + GetTokenSeperator() + GetShortDeviceID();
}

/**
 * \brief The driver's location
 * \param[in] replaceEnvironmentVariables Replace $(NAME) by the variable's value
 */
GenICam::gcstring CDeviceID::GetDriverDirectory(bool replaceEnvironmentVariables) const {
    GenICam::gcstring directory = m_driverDirectory;
    if (replaceEnvironmentVariables)
        GenICam::ReplaceEnvironmentVariables(directory);
    return directory;
}

/**
 * \brief Path under which the driver can be loaded on this system
 * \return The path, environment variables replaced; empty without a driver
 */
GenICam::gcstring CDeviceID::GetDriverPath() const {
    if (m_driverFileName.empty())
        return {};
    return DriverPathIn(m_driverDirectory.str(), m_driverFileName.str());
}

GenICam::gcstring CDeviceID::GetCameraManufacturer() const {
    return Plain(m_driverFileName, m_manufacturer);
}

GenICam::gcstring CDeviceID::GetCameraFamily() const {
    return Plain(m_driverFileName, m_family);
}

GenICam::gcstring CDeviceID::GetCameraModel() const {
    return Plain(m_driverFileName, m_model);
}

GenICam::gcstring CDeviceID::GetCameraVersion() const {
    return Plain(m_driverFileName, m_version);
}

GenICam::gcstring CDeviceID::GetCameraSerialNumber() const {
    return Plain(m_driverFileName, m_serialNumber);
}

/// The identifier without the driver's directory and file name.
GenICam::gcstring CDeviceID::GetShortDeviceID() const {
    const GenICam::gcstring* const order[] = {&m_manufacturer, &m_family, &m_model, &m_version, &m_serialNumber};
    std::vector<std::string> tokens;
    for (std::size_t index = 0; index + kFirstShortToken < m_tokens && index < std::size(order); ++index)
        tokens.push_back(order[index]->str());
    // Six tokens have no version.
    if (m_tokens == kTokensWithVersion - 1)
        tokens.back() = m_serialNumber.str();
    return Join(tokens, kSeparator);
}

/**
 * \brief Whether the identifier begins with the tokens of a full template
 * \return False for an unparsed identifier and for what is no template
 */
bool CDeviceID::IsMatchingTemplate(const GenICam::gcstring& deviceIdTemplate) const {
    return m_tokens != 0 && CDeviceID().FromString(deviceIdTemplate) &&
           BeginsWithTokens(ToString().view(), deviceIdTemplate.view(), kSeparator);
}

}  // namespace CLProtocol
