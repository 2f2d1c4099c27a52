/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders of an installed or built tree, and text files
 */
#pragma once

#include "vanto/VantoTypes.h"

namespace Vanto {

/// The folders below the root; the numbers are part of the interface.
enum eFolderType {
    eRootFolder = 0,
    eBinaryFolder = 1,
    eLibraryFolder = 2,
    eTransportLayerFolder = 3,
    ePluginFolder = 4,
    eConfigurationFolder = 5
};

/// A folder below the root, without a separator at its end. The root is VANTO_ROOT if set and not empty, else derived
/// from where the base library lies.
VANTOBASE_API gcstring getVantoFolderPath(eFolderType type);
VANTOBASE_API gcstring getVantoPathSeperator();

/// The whole text of a file; throws RuntimeException naming file and reason. Bounded at 256 MiB.
VANTOBASE_API gcstring textFileToString(const gcstring& path);

}  // namespace Vanto
