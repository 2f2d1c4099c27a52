/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CConfigFileRegistry: which description and merge files are bound to which cameras
 */
#pragma once

#include "vanto/Info.h"

namespace Vanto {

/// Finds the description files that a registry file binds to a camera. Thread-safe.
class VANTOBASE_API CConfigFileRegistry {
public:
    /// Where a camera's description comes from, and what is merged into it.
    struct CBinding {
        bool useDeviceDescription = true;  ///<  whether the camera's own description is used
        bool hasDescriptionFile =
            false;                  ///<  whether there is a file to use in place of it, or where the camera has none
        gcstring descriptionFile;   ///<  path of that file
        bool hasMergeFile = false;  ///<  whether nodes are merged into the description
        gcstring mergeFile;         ///<  path of the file that holds them
    };

    /// The one registry of the process.
    static CConfigFileRegistry& GetInstance();

    CBinding GetXmlFileBinding(const IProperties& info) const;
    gcstring GetRegistryFilePath() const;

    CConfigFileRegistry(const CConfigFileRegistry&) = delete;
    CConfigFileRegistry& operator=(const CConfigFileRegistry&) = delete;

private:
    CConfigFileRegistry() = default;
    ~CConfigFileRegistry() = default;
};

}  // namespace Vanto
