/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What several tests need: folders, files, paths and the environment
 */
#pragma once

#include <string>

#include "../../support/ScopedVariable.h"
#include "../../support/TemporaryFolder.h"
#include "os/Path.h"

using test_support::ScopedVariable;
using test_support::TemporaryFolder;

/// A path as this system writes it.
inline std::string Native(const std::string& path) {
    return os::ToSystemSeparators(path);
}
