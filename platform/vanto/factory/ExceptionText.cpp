/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of exceptions that come out of other libraries
 */

#include "factory/ExceptionText.h"

#include <exception>

#include "Base/GCException.h"

namespace Vanto {

/**
 * \brief The text of the exception that is being handled, of whatever type it is; to be called in a handler
 */
std::string DescribeCurrentException() {
    try {
        throw;
    } catch (const GenICam::GenericException& error) {
        return error.GetDescription();
    } catch (const std::exception& error) {
        return error.what();
    } catch (const char* text) {
        return text != nullptr ? text : "an exception without a text";
    } catch (...) {
        return "an exception of an unknown type";
    }
}

}  // namespace Vanto
