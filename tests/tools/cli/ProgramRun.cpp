/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What all runs of vanto-cl have in common, whatever the system
 */
#include "ProgramRun.h"

#include "system/Folders.h"

namespace tools_test {

Environment WithoutTheUsersState(Environment environment) {
    static const tools::TemporaryFolder state;
    environment.try_emplace("VANTO_CL_STATE", state.Path().string());
    return environment;
}

}  // namespace tools_test
