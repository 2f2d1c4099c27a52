/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions with the name of their source: throw VANTO_EXCEPTION(RuntimeException, kSource)("...", ...)
 */
#pragma once

#include <source_location>

#include "Base/GCException.h"

#define VANTO_EXCEPTION(Type, source) GenICam::ExceptionReporter<GenICam::Type>(source, __LINE__, #Type).Report

/// For helpers that throw for their callers: the line is that of a std::source_location.
#define VANTO_EXCEPTION_AT(Type, source, location) \
    GenICam::ExceptionReporter<GenICam::Type>(source, (location).line(), #Type).Report
