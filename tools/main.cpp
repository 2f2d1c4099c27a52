/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl, the command-line tool for Camera Link cameras
 */
#include <cstdio>

#include "CLProtocol/Activity.h"
#include "app/Application.h"
#include "output/Output.h"
#include "system/Interruption.h"
#include "system/Terminal.h"

int main(int argumentCount, char** arguments) {
    tools::PrepareStreams();
    // A fetch of minutes ends within its next packet, and leaves the camera at the rate that it had.
    const tools::Interruption interruption([] { CLProtocol::SetStopRequested(true); });
    tools::Output output(stdout, stderr);
    return static_cast<int>(tools::RunApplication(argumentCount, arguments, output));
}
