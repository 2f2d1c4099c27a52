/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What every exported function passes through
 */
#include "exports/Guard.h"

#include <cstring>

#include "support/LastError.h"
#include "support/Log.h"
#include "support/Translation.h"

namespace gentl {

namespace {

void Keep(const GenTLError& error) {
    StoreLastError(error.Code(), error.what());
    LogTrace(LogCategory(), Vanto::tracelog::kDebug, "%s: %s", NameOf(error.Code()), error.what());
}

}  // namespace

GC_ERROR StoreCurrentException() noexcept {
    try {
        try {
            RethrowAsGenTLError();
        } catch (const GenTLError& error) {
            Keep(error);
            return error.Code();
        }
    } catch (...) {  // no memory for the text of the error
        StoreLastError(GC_ERR_OUT_OF_MEMORY, "There is not enough memory");
        return GC_ERR_OUT_OF_MEMORY;
    }
}

std::string TextArgument(const char* text, const char* name) {
    return Required(text, name);
}

}  // namespace gentl
