/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's description: from a file, from the cache or from the camera
 */
#pragma once

#include <string>
#include <vector>

#include "CLProtocol/DeviceID.h"
#include "Session.h"
#include "XmlIds.h"

namespace CLProtocol {

std::vector<XmlCandidate> FindDescriptions(Session& session, const CDeviceID& deviceId, CLUINT32 timeoutMs,
                                           std::string& whyNone);
std::string FetchDescription(Session& session, const CDeviceID& deviceId, CLUINT32 timeoutMs, bool useCache);

}  // namespace CLProtocol
