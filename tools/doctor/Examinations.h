/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the doctor looks at, one section each
 */
#pragma once

#include "cameras/Reasons.h"
#include "doctor/Report.h"

namespace tools {

Section ExamineEnvironment();
Section ExamineFolders();
Section ExamineTransportLayers(const TransportLayer& layer);
Section ExamineSerialLibraries();
Section ExamineDrivers();
Section ExaminePorts();
Section ExamineConfiguration();
Section ExamineCameras(const Enumeration& enumeration);
/// Opens each camera, as an application does, and looks at its description and its baud rates.
Section ExamineOpening(const TransportLayer& layer, const Enumeration& enumeration, Output& output);
/// Loads the GenTL producer and lists its cameras, as a program that takes them through GenTL does.
Section ExamineProducer();
/// The libraries' own complaints during the look for cameras, the last ones last.
Section ExamineLog(const Enumeration& enumeration);

/// \param[in] output For progress
Report Examine(Output& output);

}  // namespace tools
