/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Driver: what the exported functions do, in terms of C++
 */

#include "Driver.h"

#include <utility>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

/**
 * \brief Look for a camera and open a connection to it
 * \param[in] serial The line; used again in calls with the cookie only
 * \param[in] templateOrDeviceId Which camera
 * \param[in] timeout Of each exchange
 *
 * \throw DriverError CLP_INVALID_DEVICEID; kProbeStopped; else as Connection::Open
 */
Driver::Found Driver::Probe(CLProtocol::ISerial& serial, std::string_view templateOrDeviceId, Duration timeout) {
    const unsigned stops = m_stops;
    const DeviceRequest request(templateOrDeviceId);
    auto connection = std::make_shared<Connection>(serial, m_clock, m_logger, m_known);
    connection->Open(request, timeout, [this, stops] {
        if (m_stops != stops)
            throw DriverError(kProbeStopped, "Probing was stopped.");
    });
    std::string deviceId = connection->ShortDeviceId();
    return {Add(std::move(connection)), std::move(deviceId)};
}

CLUINT32 Driver::Add(std::shared_ptr<Connection> connection) {
    const std::lock_guard lock(m_mutex);
    do {
        ++m_lastCookie;
    } while (m_lastCookie == 0 || m_connections.contains(m_lastCookie));
    m_connections.emplace(m_lastCookie, std::move(connection));
    return m_lastCookie;
}

/// The connection of a cookie; lives as long as the caller holds it.
std::shared_ptr<Connection> Driver::Get(CLUINT32 cookie) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_connections.find(cookie);
    if (found == m_connections.end())
        throw DriverError(CLProtocol::CLP_INVALID_COOKIE,
                          fmt::format("The cookie {} stands for no connection.", cookie));
    return found->second;
}

/**
 * \brief Forget a connection; the camera keeps its baud rate
 * \param[in] cookie From Probe
 *
 * On return no call uses the line of the connection any more.
 */
void Driver::Disconnect(CLUINT32 cookie) {
    const auto connection = Get(cookie);
    {
        const std::lock_guard lock(m_mutex);
        m_connections.erase(cookie);
    }
    connection->WaitUntilIdle();
}

/// Forget all connections and what was learned.
void Driver::Close() {
    std::map<CLUINT32, std::shared_ptr<Connection>> connections;
    {
        const std::lock_guard lock(m_mutex);
        connections.swap(m_connections);
    }
    StopProbing();
    for (const auto& [cookie, connection] : connections)
        connection->WaitUntilIdle();
    m_known.Clear();
    m_errors.Clear();
    m_logger.Set(nullptr);
}

/**
 * \brief What an error code means: the very failure when there was one, else the code in general
 * \param[in] code Returned by a function of the driver, or CLP_LAST_ERROR
 * \param[in] cookie Of the failing call, 0 for none
 *
 * \throw DriverError CL_ERR_ERROR_NOT_FOUND for codes that others explain
 */
std::string Driver::ErrorText(CLINT32 code, CLUINT32 cookie) const {
    if (auto text = m_errors.Find(cookie, code))
        return *std::move(text);
    const auto text = CodeText(code);
    if (text.empty())
        throw DriverError(CL_ERR_ERROR_NOT_FOUND, fmt::format("{} is no error code of this driver.", code));
    return std::string(text);
}

}  // namespace marlow
