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
        bool useDeviceDescription = true;
        bool hasDescriptionFile = false;
        gcstring descriptionFile;
        bool hasMergeFile = false;
        gcstring mergeFile;
    };

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
