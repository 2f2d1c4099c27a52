/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl, the command-line tool for Camera Link cameras
 */
#include <cstdio>

#include "app/Application.h"
#include "output/Output.h"
#include "system/Interruption.h"
#include "system/Terminal.h"

int main(int argumentCount, char** arguments) {
    tools::PrepareStreams();
    const tools::Interruption interruption;
    tools::Output output(stdout, stderr);
    return static_cast<int>(tools::RunApplication(argumentCount, arguments, output));
}
