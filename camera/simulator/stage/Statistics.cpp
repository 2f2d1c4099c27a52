/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a simulated camera has seen and done
 */

#include "simulator/Statistics.h"

#include <sstream>

namespace MarlowSim {

/**
 * \brief Give all figures in one line: name=value, writes as write.0xADDRESS=count
 */
std::string Statistics::ToText() const {
    std::ostringstream text;
    text << "packets-in=" << packetsIn << " packets-out=" << packetsOut << " bytes-in=" << bytesIn
         << " bytes-out=" << bytesOut << " lost=" << lost << " damaged=" << damaged << " repeated=" << repeated
         << " noise-bytes=" << noiseBytes
         << " line-us=" << std::chrono::duration_cast<std::chrono::microseconds>(lineTime).count()
         << " executed=" << executed << " resent=" << resent;
    for (const auto& [address, count] : writes)
        text << " write.0x" << std::hex << address << std::dec << "=" << count;
    return text.str();
}

}  // namespace MarlowSim
