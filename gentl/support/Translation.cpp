/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions of the libraries below as errors of the interface
 */
#include "support/Translation.h"

#include <new>

#include "Base/GCException.h"
#include "support/GenTLError.h"

namespace gentl {

namespace {

[[noreturn]] void RethrowGenICam() {
    try {
        throw;
    } catch (const GenICam::AccessException& error) {
        throw GenTLError(GC_ERR_ACCESS_DENIED, error.GetDescription());
    } catch (const GenICam::OutOfRangeException& error) {
        throw GenTLError(GC_ERR_INVALID_VALUE, error.GetDescription());
    } catch (const GenICam::InvalidArgumentException& error) {
        throw GenTLError(GC_ERR_INVALID_ADDRESS, error.GetDescription());
    } catch (const GenICam::BadAllocException& error) {
        throw GenTLError(GC_ERR_OUT_OF_MEMORY, error.GetDescription());
    } catch (const GenICam::GenericException& error) {
        throw GenTLError(GC_ERR_IO, error.GetDescription());
    }
}

}  // namespace

void RethrowAsGenTLError() {
    try {
        throw;
    } catch (const GenTLError&) {
        throw;
    } catch (const GenICam::GenericException&) {
        RethrowGenICam();
    } catch (const std::bad_alloc&) {
        throw GenTLError(GC_ERR_OUT_OF_MEMORY, "There is not enough memory");
    } catch (const std::exception& error) {
        throw GenTLError(GC_ERR_ERROR, error.what());
    } catch (...) {
        throw GenTLError(GC_ERR_ERROR, "Something that is no exception was thrown");
    }
}

}  // namespace gentl
