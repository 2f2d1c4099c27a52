/* SPDX-License-Identifier: Apache-2.0 */
/*
 * marlow-lines: lends pseudo-terminals to simulators that run under Wine
 */

#include <exception>
#include <iostream>

#include "line/LineServer.h"
#include "os/StandardStreams.h"

int main(int argc, char** argv) {
    os::OccupyStandardStreams();
    if (argc != 2) {
        std::cerr << "usage: marlow-lines FOLDER\n"
                     "Lends serial lines over TCP until it is ended, and links each in the folder. Prints its port.\n";
        return 2;
    }
    try {
        const auto server = MarlowSim::LineServer::Create(argv[1]);
        std::cout << server->Port() << std::endl;
        server->Run();
    } catch (const std::exception& error) {
        std::cerr << "marlow-lines: " << error.what() << "\n";
        return 1;
    }
}
